#pragma once

class PictureServer;
class Pictures;
class Table;

/// CPU for a refresh in a view of 800 x 600, from connect to pixels on the screen, of Pevora's
/// viewer and of feh, and of djpeg for decoding the same files whole. Three rows' worth of rounds,
/// each of which measures all three programs; adds a row against either.
void benchRefresh(Table& table, PictureServer& server, const Pictures& pictures);

/// Memory of the viewer with `pictures` shown 45 times, so that its history is full.
void benchMemory(Table& table, PictureServer& server, const Pictures& pictures);

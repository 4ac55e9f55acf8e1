#pragma once

class Table;

/// Loading, searching and saving lists of 1,000, 10,000 and 100,000 cameras.
void benchCameraList(Table& table);

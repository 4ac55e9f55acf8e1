#pragma once

class Table;

/// The time from the start of the program to its first painted window, against a program that
/// shows a bare QMainWindow; started in turns.
void benchStartUp(Table& table);

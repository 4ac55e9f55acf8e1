#pragma once

class Table;

/// The processor time from the start of the program to its first painted window, against a program
/// that shows a QMainWindow with a label and a menu bar, and one that shows it bare; started in
/// turns.
void benchStartUp(Table& table);

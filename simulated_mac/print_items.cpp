// Prints the table of the installed client for scripts, a line each, its columns parted by tabs: the kind,
// the modes that take the item away, by the first letters of their switches, its place, its detail.
#include <iostream>

#include "simulated_mac/client_items.h"

int main() {
  for (const auto& item : wendle::mac::clientItems())
    std::cout << item.kind << '\t' << item.letters << '\t' << item.place << '\t' << item.detail << '\n';
}

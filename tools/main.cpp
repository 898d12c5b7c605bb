#include "CommandLine.h"

#include <iostream>

int main(int inCount, char** inArguments) {
  std::ios::sync_with_stdio(false);
  std::cin.tie(nullptr);
  return mezzo::tool::Run({inArguments + (inCount > 0 ? 1 : 0), inArguments + inCount});
}

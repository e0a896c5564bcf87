// SPDX-License-Identifier: MIT
#include "operations.h"

#include <iostream>

int main() {
    std::ios::sync_with_stdio(false);
    talvera::conformance::Driver driver;
    talvera::conformance::addAllOperations(driver);
    driver.run(std::cin, std::cout);
    return 0;
}

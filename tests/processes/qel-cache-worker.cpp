// Executes commands from standard input on the cache file named by its argument.

#include <iostream>

#include "CacheWorker.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: qel-cache-worker CACHE\n";
        return 2;
    }
    Qel::initEnvCache(argv[1], false);
    Qel::TestSupport::CacheWorker().run(std::cin, std::cout);
    return 0;
}

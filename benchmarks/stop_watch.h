// Times an act again and again in one process.
#pragma once

#include <chrono>
#include <cstdio>

// Prints the seconds of each round, a line each. False when the act fails.
template<class Act>
bool print_seconds(int rounds, Act act) {
    for (int i = 0; i < rounds; ++i) {
        const auto begin = std::chrono::steady_clock::now();
        if (!act())
            return false;
        std::printf("%.9f\n",
                    std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
    }
    return true;
}

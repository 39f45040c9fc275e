// Times two ways of doing the same work in turn, so that whatever else the machine does meets both,
// and compares their medians.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <vector>

namespace bench
{

inline double Seconds()
{
    LARGE_INTEGER now;
    LARGE_INTEGER frequency;
    ::QueryPerformanceCounter(&now);
    ::QueryPerformanceFrequency(&frequency);
    return static_cast<double>(now.QuadPart) / static_cast<double>(frequency.QuadPart);
}

inline double Median(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
    return values[values.size() / 2];
}

template <typename Work>
double TimeOnce(Work& work, int repetitions)
{
    const double start = Seconds();
    for (int i = 0; i < repetitions; ++i) work();
    return (Seconds() - start) / repetitions;
}

struct Comparison
{
    double ours;    // seconds, median
    double theirs;  // seconds, median
    double Ratio() const { return ours / theirs; }
};

// `rounds` pairs, each side `repetitions` times in a row.
template <typename Ours, typename Theirs>
Comparison Compare(int rounds, int repetitions, Ours ours, Theirs theirs)
{
    std::vector<double> oursTimes;
    std::vector<double> theirsTimes;
    ours();
    theirs();
    for (int i = 0; i < rounds; ++i)
    {
        oursTimes.push_back(TimeOnce(ours, repetitions));
        theirsTimes.push_back(TimeOnce(theirs, repetitions));
    }
    return {Median(oursTimes), Median(theirsTimes)};
}

// For what has no limit.
inline void Report(const char* title, const Comparison& comparison)
{
    std::printf("%-58s %9.1f us  %9.1f us  ratio %.3f\n", title, comparison.ours * 1e6, comparison.theirs * 1e6,
        comparison.Ratio());
    std::fflush(stdout);
}

inline void Report(const char* title, const Comparison& comparison, double limit)
{
    std::printf("%-58s %9.1f us  %9.1f us  ratio %.3f  (at most %.2f)%s\n", title, comparison.ours * 1e6,
        comparison.theirs * 1e6, comparison.Ratio(), limit, comparison.Ratio() <= limit ? "" : "  MISSED");
    std::fflush(stdout);
}

}  // namespace bench

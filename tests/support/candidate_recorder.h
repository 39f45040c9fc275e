// Consumer of a locale search that writes down what it is offered and accepts what a test names.
#pragma once

#include "arvmui.h"

#include <string>

namespace arvmui_test
{

template <typename Char>
struct BasicCandidateRecorder
{
    std::basic_string<Char> offered;   // the candidates, each followed by '|'
    std::basic_string<Char> accepted;  // the candidate to accept; empty for none
    DWORD result = 1;                  // what accepting returns
    unsigned nulls = 0;                // null candidates

    static DWORD ARVMUI_CALLBACK Record(const Char* candidate, void* context)
    {
        BasicCandidateRecorder& recorder = *static_cast<BasicCandidateRecorder*>(context);
        if (!candidate)
        {
            ++recorder.nulls;
            return 0;
        }
        recorder.offered += candidate;
        recorder.offered += Char{'|'};
        return candidate == recorder.accepted ? recorder.result : 0;
    }
};

using CandidateRecorder = BasicCandidateRecorder<wchar_t>;
using NarrowCandidateRecorder = BasicCandidateRecorder<char>;

}  // namespace arvmui_test

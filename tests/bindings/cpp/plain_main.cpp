// A program without exceptions and run-time type information whose two sources include the whole layer.
// Exit code 0: what both see of the layer is one thing.
#include "plain_other.h"

int main()
{
    const arvmui::MessagePopups quiet(false);
    const std::wstring here = FormattedHere();
    if (here != FormattedThere() || here != L"de: 2") return 1;
    return &arvmui::FormatText == AddressThere() ? 0 : 2;
}

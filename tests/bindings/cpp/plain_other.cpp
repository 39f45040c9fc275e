#include "plain_other.h"

std::wstring FormattedThere()
{
    return FormattedHere();
}

FormatFunction AddressThere()
{
    return &arvmui::FormatText;
}

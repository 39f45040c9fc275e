// Custom actions that write down what their session holds, into the file that the property REPORTFILE
// names and a word for the sequence.
#include "installer/session/session_report.h"
#include "support/msi_database.h"

#include <exception>

namespace
{

UINT Report(MSIHANDLE session, const wchar_t* sequence) noexcept
{
    try
    {
        const std::wstring file = arvmui_test::SessionProperty(session, L"REPORTFILE");
        arvmui_test::WriteSessionReport(session, file + L"." + sequence);
        return ERROR_SUCCESS;
    }
    catch (const std::exception&)
    {
        return ERROR_INSTALL_FAILURE;
    }
}

}  // namespace

extern "C" __declspec(dllexport) UINT WINAPI ReportInterface(MSIHANDLE session)
{
    return Report(session, L"interface");
}

extern "C" __declspec(dllexport) UINT WINAPI ReportExecution(MSIHANDLE session)
{
    return Report(session, L"execution");
}

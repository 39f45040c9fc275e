// A program as customers write it: the loader attaches the DLL before it runs.
#include "attach_report.h"

int main()
{
    const arvmui_test::AttachedLibrary library = {
        ARVMUI_GetDescriptor, ARVMUI_GetLocaleW, ARVMUI_GetLangID, ARVMUI_GetCommandLineA};
    arvmui_test::WriteReport(library, 0);
    arvmui_test::RunChild();
    arvmui_test::WaitForTest();
    return 0;
}

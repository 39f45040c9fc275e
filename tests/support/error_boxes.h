// The boxes in which the DLL reports errors, caught instead of shown. Its messages are short ones for
// as long as the object lives: "903:<argument>:<error>" for message 903 with an argument.
#pragma once

#include "arvmui.h"
#include "support/box_recorder.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

namespace arvmui_test
{

class ErrorBoxes
{
public:
    ErrorBoxes()
        : messages_(
            folder_.Path() / L"messages.dll", {{1, L"en-US"}, {2, L"1033"}, {900, L"Error"}, {902, L"902:%%lu"},
                                                  {903, L"903:%s:%%lu"}, {904, L"904:%s:%%lu"}, {905, L"905:%s:%%lu"}}),
          ownLibrary_(ARVMUI_GetDescriptor()->resourceLibrary), recorder_(LibraryUnderTest())
    {
        ARVMUI_GetDescriptor()->resourceLibrary = messages_.Get();
        ARVMUI_SetMessagePopup(TRUE, &popups_);
    }
    ~ErrorBoxes()
    {
        ARVMUI_SetMessagePopup(popups_, nullptr);
        ARVMUI_GetDescriptor()->resourceLibrary = ownLibrary_;
    }
    ErrorBoxes(const ErrorBoxes&) = delete;
    ErrorBoxes& operator=(const ErrorBoxes&) = delete;

    const std::vector<std::wstring>& Texts() const { return recorder_.Texts(); }

private:
    TemporaryFolder folder_;
    LoadedModule messages_;
    HMODULE ownLibrary_;
    BOOL popups_ = FALSE;
    BoxRecorder recorder_;
};

}  // namespace arvmui_test

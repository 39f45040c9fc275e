// The box that reports lacking memory, as a real window with the texts of a real resource library.
#include "foundation/heap.h"

#include "resources/process_state.h"
#include "support/box_window.h"
#include "support/modal_call.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace
{

constexpr SIZE_T kImpossible = 0x7FFFFFFFFFFF0000;

TEST(OutOfMemoryWindow, HasTheTextsOfTheResourceLibraryAndTheAllocationGivesNullBehindIt)
{
    // The texts are cut to 63 characters each.
    const std::wstring caption(70, L'c');
    const std::wstring text(70, L't');
    const arvmui_test::TemporaryFolder folder;
    const arvmui_test::LoadedModule resources(folder.Path() / L"texts.dll", {{900, caption}, {901, text}});
    arvmui::Descriptor().resourceLibrary = resources.Get();
    ARVMUI_SetMessagePopup(TRUE, nullptr);

    {
        arvmui_test::ModalCall call([] { return ARVMUI_realloc(nullptr, kImpossible) == nullptr ? 1 : 0; });
        const HWND box = call.WaitForBox();
        ASSERT_NE(box, nullptr);
        const arvmui_test::BoxContents contents = arvmui_test::ReadBox(box);
        EXPECT_EQ(contents.caption, caption.substr(0, 63));
        EXPECT_EQ(contents.text, text.substr(0, 63));
        EXPECT_EQ(contents.buttons.size(), 1u);
        EXPECT_EQ(::GetWindow(box, GW_OWNER), nullptr);
        ASSERT_EQ(contents.buttons.size(), 1u);
        EXPECT_TRUE(arvmui_test::PressButton(box, contents.buttons.begin()->first));
        EXPECT_EQ(call.Result(), 1);
    }
    ARVMUI_SetMessagePopup(FALSE, nullptr);
    arvmui::Descriptor().resourceLibrary = nullptr;
}

}  // namespace

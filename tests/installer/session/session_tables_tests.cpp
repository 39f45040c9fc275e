// What a session holds once its language has been chosen.
#include "installer/session/session_fixture.h"

namespace
{

using arvmui_test::ChineseTables;
using arvmui_test::EnglishTables;
using arvmui_test::GermanTables;
using arvmui_test::kBinaryColumns;
using arvmui_test::kUITextColumns;
using arvmui_test::MsiStream;
using arvmui_test::SessionTest;

constexpr UINT kFailed = 1627;

class SessionTables : public SessionTest
{
protected:
    UINT SetLocaleTo(const std::wstring& locale)
    {
        Set(L"UILOCALE", locale);
        return SetLocale();
    }
};

TEST_F(SessionTables, AreEnglishInThePackage)
{
    Open();
    EXPECT_EQ(Tables(), EnglishTables());
}

TEST_F(SessionTables, StayAsTheyAreInEnglish)
{
    Open();
    EXPECT_EQ(SetLocaleTo(L"en"), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Tables(), EnglishTables());
    EXPECT_EQ(Get(L"GREETING"), L"Hello");
    EXPECT_EQ(Get(L"UILOCALE"), L"en");
}

TEST_F(SessionTables, HoldTheLocalizedRowWhereThereIsOne)
{
    Open();
    EXPECT_EQ(SetLocaleTo(L"de"), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Tables(), GermanTables());
    EXPECT_EQ(Get(L"UILOCALE"), L"de");
}

TEST_F(SessionTables, MayBeNamedWithAnUnderscoreForTheHyphen)
{
    Open();
    EXPECT_EQ(SetLocaleTo(L"zh-CN"), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Tables(), ChineseTables());
    EXPECT_EQ(Get(L"UILOCALE"), L"zh-CN");
}

// As when the second sequence of an installation comes to the action.
TEST_F(SessionTables, AreTheSameWhenTheLanguageIsChosenTwice)
{
    Open();
    EXPECT_EQ(SetLocaleTo(L"de"), UINT{ERROR_SUCCESS});
    EXPECT_EQ(SetLocale(), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Tables(), GermanTables());
    EXPECT_EQ(Get(L"GREETING"), L"Guten Tag");
}

TEST_F(SessionTables, AreChangedForTheSessionOnly)
{
    Open();
    EXPECT_EQ(SetLocaleTo(L"de"), UINT{ERROR_SUCCESS});
    EXPECT_EQ(arvmui_test::ReadTables(arvmui_test::OpenMsiDatabase(file).Get()), EnglishTables());
}

TEST_F(SessionTables, OfOtherLanguagesStayAsTheyAre)
{
    Open();
    const std::wstring query = L"SELECT * FROM `UIText_zh_CN`";
    EXPECT_EQ(SetLocaleTo(L"de"), UINT{ERROR_SUCCESS});
    EXPECT_EQ(arvmui_test::ReadMsiRows(arvmui_test::ActiveDatabase(Session()).Get(), query),
        (arvmui_test::MsiRows{{L"None", L"\u65E0"}}));
}

TEST_F(SessionTables, NeedABaseTable)
{
    package.tables.Add({L"Orphan_de", kUITextColumns, {{L"Key", L"Text"}}});
    Open();
    EXPECT_EQ(SetLocaleTo(L"de"), kFailed);
    EXPECT_EQ(Get(L"UILOCALE"), L"de") << "the preset value is all there was";
}

TEST_F(SessionTables, MayBeEmpty)
{
    package.tables.Add({L"Hollow", kUITextColumns, {}}).AddLocalized(L"Hollow", L"de", {});
    Open();
    EXPECT_EQ(SetLocaleTo(L"de"), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Tables(), GermanTables());
}

TEST_F(SessionTables, WithoutRowsTakeTheLocalizedOnes)
{
    package.tables.Add({L"Hollow", kUITextColumns, {}}).AddLocalized(L"Hollow", L"de", {{L"Key", L"Wert"}});
    Open();
    EXPECT_EQ(SetLocaleTo(L"de"), UINT{ERROR_SUCCESS});
    EXPECT_EQ(arvmui_test::ReadMsiRows(arvmui_test::ActiveDatabase(Session()).Get(), L"SELECT * FROM `Hollow`"),
        (arvmui_test::MsiRows{{L"Key", L"Wert"}}));
}

// ---- Streams --------------------------------------------------------------------------------------------

TEST_F(SessionTables, NeedNoLocalizedStreams)
{
    package.tables.Remove(L"Binary_de");
    Open();
    EXPECT_EQ(SetLocaleTo(L"de"), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Tables().at(L"Binary"), EnglishTables().at(L"Binary"));
    EXPECT_EQ(Tables().at(L"UIText"), GermanTables().at(L"UIText"));
}

TEST_F(SessionTables, NeedNoStreamsToLocalize)
{
    package.tables.Remove(L"Binary");
    Open();
    EXPECT_EQ(SetLocaleTo(L"de"), UINT{ERROR_SUCCESS});
    EXPECT_EQ(arvmui_test::SortedMsiRows(arvmui_test::ActiveDatabase(Session()).Get(), L"SELECT * FROM `UIText`"),
        GermanTables().at(L"UIText"));
}

TEST_F(SessionTables, KeepStreamsWithoutACounterpartWhateverTheirOrder)
{
    package.tables.Remove(L"Binary").Remove(L"Binary_de");
    package.tables
        .Add({L"Binary", kBinaryColumns,
            {{L"C", MsiStream{"c"}}, {L"A", MsiStream{"a"}}, {L"D", MsiStream{"d"}}, {L"B", MsiStream{"b"}}}})
        .AddLocalized(L"Binary", L"de", {{L"D", MsiStream{"dd"}}, {L"A", MsiStream{"aa"}}});
    Open();
    EXPECT_EQ(SetLocaleTo(L"de"), UINT{ERROR_SUCCESS});
    EXPECT_EQ(
        Tables().at(L"Binary"), (arvmui_test::TableRows{{L"A", L"aa"}, {L"B", L"b"}, {L"C", L"c"}, {L"D", L"dd"}}));
}

// ---- Properties -----------------------------------------------------------------------------------------

TEST_F(SessionTables, OfPropertiesAreSetInTheSession)
{
    Open();
    EXPECT_EQ(SetLocaleTo(L"de"), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Get(L"GREETING"), L"Guten Tag");
    EXPECT_EQ(Get(L"FAREWELL"), L"Auf Wiedersehen");
    EXPECT_EQ(Get(L"UNTRANSLATED"), L"Plain");
    EXPECT_EQ(Get(L"ONLYGERMAN"), L"Zusatz");
}

TEST_F(SessionTables, OfPropertiesSpareWhatTheUserHasChanged)
{
    Open();
    Set(L"GREETING", L"Hi");
    Set(L"UNTRANSLATED", L"Fancy");
    EXPECT_EQ(SetLocaleTo(L"de"), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Get(L"GREETING"), L"Hi");
    EXPECT_EQ(Get(L"UNTRANSLATED"), L"Fancy");
    EXPECT_EQ(Get(L"FAREWELL"), L"Auf Wiedersehen");
}

TEST_F(SessionTables, OfPropertiesSpareWhatDiffersInCase)
{
    Open();
    Set(L"GREETING", L"HELLO");
    EXPECT_EQ(SetLocaleTo(L"de"), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Get(L"GREETING"), L"HELLO");
}

TEST_F(SessionTables, OfPropertiesSpareWhatHasBeenCleared)
{
    Open();
    Set(L"GREETING", L"");
    EXPECT_EQ(SetLocaleTo(L"de"), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Get(L"GREETING"), L"");
}

// Without an English value nobody can tell that it has been changed.
TEST_F(SessionTables, OfPropertiesReplaceWhatHasNoEnglishValue)
{
    Open();
    Set(L"ONLYGERMAN", L"Mine");
    EXPECT_EQ(SetLocaleTo(L"de"), UINT{ERROR_SUCCESS});
    EXPECT_EQ(Get(L"ONLYGERMAN"), L"Zusatz");
}

TEST_F(SessionTables, OfPropertiesNeedTheEnglishOnes)
{
    package.tables.Remove(L"Property_en");
    Open();
    EXPECT_EQ(SetLocaleTo(L"de"), kFailed);
    EXPECT_EQ(Get(L"GREETING"), L"Hello");
}

TEST_F(SessionTables, OfPropertiesNeedTheEnglishOnesOnlyWhenTheyAreMerged)
{
    package.tables.Remove(L"Property_en");
    Open();
    EXPECT_EQ(SetLocaleTo(L"en"), UINT{ERROR_SUCCESS});
}

}  // namespace

// Translating an installer package: against the same work done by plain calls of the installer, with
// growing numbers of rows, and with a look at the memory that it takes.

#include "interleaved.h"

#include <arvmui.h>

#include <msi.h>
#include <msiquery.h>
#include <psapi.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>

// ---- What the library itself allocates: its calls of the heap go through these.

namespace
{

struct LibraryMemory
{
    size_t now = 0;
    size_t most = 0;

    void Add(const void* block) { most = std::max(most, now += SizeOf(block)); }
    void Remove(const void* block) { now -= SizeOf(block); }

    static size_t SizeOf(const void* block) { return block ? ::HeapSize(::GetProcessHeap(), 0, block) : 0; }
};

LibraryMemory g_memory;

template <typename Function>
Function KernelFunction(const char* name)
{
    return reinterpret_cast<Function>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), name)));
}

LPVOID WINAPI Allocate(HANDLE heap, DWORD flags, SIZE_T bytes)
{
    static const auto real = KernelFunction<decltype(&::HeapAlloc)>("HeapAlloc");
    void* const block = real(heap, flags, bytes);
    g_memory.Add(block);
    return block;
}

LPVOID WINAPI Resize(HANDLE heap, DWORD flags, LPVOID block, SIZE_T bytes)
{
    static const auto real = KernelFunction<decltype(&::HeapReAlloc)>("HeapReAlloc");
    g_memory.Remove(block);
    void* const resized = real(heap, flags, block, bytes);
    g_memory.Add(resized ? resized : block);
    return resized;
}

BOOL WINAPI Free(HANDLE heap, DWORD flags, LPVOID block)
{
    static const auto real = KernelFunction<decltype(&::HeapFree)>("HeapFree");
    g_memory.Remove(block);
    return real(heap, flags, block);
}

}  // namespace

extern "C" {
extern decltype(&::HeapAlloc) __imp_HeapAlloc;
extern decltype(&::HeapReAlloc) __imp_HeapReAlloc;
extern decltype(&::HeapFree) __imp_HeapFree;
decltype(&::HeapAlloc) __imp_HeapAlloc = &Allocate;
decltype(&::HeapReAlloc) __imp_HeapReAlloc = &Resize;
decltype(&::HeapFree) __imp_HeapFree = &Free;
}

namespace
{

// A benchmark of failures would be worthless.
void Require(UINT result)
{
    if (result == ERROR_SUCCESS) return;
    std::printf("the installer fails with %u\n", result);
    std::exit(1);
}

class Handle
{
public:
    explicit Handle(MSIHANDLE handle = 0) : handle_(handle) {}
    ~Handle() { ::MsiCloseHandle(handle_); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    MSIHANDLE Get() const { return handle_; }
    MSIHANDLE* Slot() { return &handle_; }

private:
    MSIHANDLE handle_;
};

// ---- Packages.

std::wstring TemporaryFile(const std::wstring& name)
{
    wchar_t folder[MAX_PATH] = {};
    ::GetTempPathW(MAX_PATH, folder);
    return std::wstring(folder) + L"arvmui_bench_" + std::to_wstring(::GetCurrentProcessId()) + name;
}

void OpenView(MSIHANDLE database, const std::wstring& sql, Handle& view)
{
    Require(::MsiDatabaseOpenViewW(database, sql.c_str(), view.Slot()));
    Require(::MsiViewExecute(view.Get(), 0));
}

void Execute(MSIHANDLE database, const std::wstring& sql)
{
    Handle view;
    OpenView(database, sql, view);
}

using Rows = std::vector<std::vector<std::wstring>>;

void AddTable(MSIHANDLE database, const std::wstring& name, const std::wstring& columns, const Rows& rows)
{
    Execute(database, L"CREATE TABLE `" + name + L"` (" + columns + L")");
    Handle view;
    OpenView(database, L"SELECT * FROM `" + name + L"`", view);
    for (const std::vector<std::wstring>& row : rows)
    {
        const Handle record(::MsiCreateRecord(static_cast<UINT>(row.size())));
        for (UINT field = 0; field < row.size(); ++field)
            Require(::MsiRecordSetStringW(record.Get(), field + 1, row[field].c_str()));
        Require(::MsiViewModify(view.Get(), MSIMODIFY_INSERT, record.Get()));
    }
}

Rows MakeRows(int table, int count, const wchar_t* text)
{
    Rows rows;
    for (int row = 0; row < count; ++row)
        rows.push_back(
            {L"Key" + std::to_wstring(row), text + std::to_wstring(row) + L" of table " + std::to_wstring(table)});
    return rows;
}

// Every table has a German one with the same keys.
class Package
{
public:
    Package(int tables, int rows) : path_(TemporaryFile(L"_" + std::to_wstring(tables) + L"_" + std::to_wstring(rows)))
    {
        const std::wstring columns = L"`Key` CHAR(72) NOT NULL, `Text` LONGCHAR LOCALIZABLE PRIMARY KEY `Key`";
        Handle database;
        Require(::MsiOpenDatabaseW(path_.c_str(), MSIDBOPEN_CREATE, database.Slot()));
        AddTable(database.Get(), L"ARVUILocale",
            L"`Locale` CHAR(255) NOT NULL, `LangID` LONG NOT NULL, `EnglishName` CHAR(255), `NativeName` CHAR(255), "
            L"`DisplayOrder` SHORT PRIMARY KEY `Locale`",
            {{L"en", L"1033", L"English", L"English", L"1"}, {L"de", L"1031", L"German", L"Deutsch", L"2"}});
        AddTable(database.Get(), L"Property", columns, {{L"ProductName", L"Product"}});
        AddTable(database.Get(), L"_Validation",
            L"`Table` CHAR(32) NOT NULL, `Column` CHAR(32) NOT NULL PRIMARY KEY `Table`, `Column`", {});
        for (int table = 0; table < tables; ++table)
        {
            const std::wstring name = L"Table" + std::to_wstring(table);
            AddTable(database.Get(), name, columns, MakeRows(table, rows, L"English text "));
            AddTable(database.Get(), name + L"_de", columns, MakeRows(table, rows, L"Deutscher Text "));
        }
        Require(::MsiDatabaseCommit(database.Get()));
    }
    ~Package() { ::DeleteFileW(path_.c_str()); }
    Package(const Package&) = delete;
    Package& operator=(const Package&) = delete;

    const std::wstring& Path() const { return path_; }

private:
    std::wstring path_;
};

class PackageCopy
{
public:
    explicit PackageCopy(const Package& package)
    {
        if (!::CopyFileW(package.Path().c_str(), path_.c_str(), FALSE)) std::exit(1);
    }
    ~PackageCopy() { ::DeleteFileW(path_.c_str()); }
    PackageCopy(const PackageCopy&) = delete;
    PackageCopy& operator=(const PackageCopy&) = delete;

    const std::wstring& Path() const { return path_; }

    // Translated, it has none of the German tables.
    void RequireTranslated() const
    {
        Handle database;
        Require(::MsiOpenDatabaseW(path_.c_str(), MSIDBOPEN_READONLY, database.Slot()));
        Handle view;
        if (::MsiDatabaseOpenViewW(database.Get(), L"SELECT * FROM `Table0_de`", view.Slot()) == ERROR_SUCCESS)
        {
            std::printf("the package is not translated\n");
            std::exit(1);
        }
    }

private:
    std::wstring path_ = TemporaryFile(L"_copy");
};

// ---- The work, done by the library and by plain calls.

void TranslateByLibrary(const std::wstring& path)
{
    std::string line = "\"de\" \"";
    for (const wchar_t character : path)
        line += character == L'\\' ? "\\\\" : std::string(1, static_cast<char>(character));
    line += "\" \"NOTRANSFORM\"";
    ARVMUI_RUNDLL32_TranslateLocalPackage(nullptr, nullptr, line.data(), 0);
}

std::wstring TextOf(MSIHANDLE record, UINT field)
{
    wchar_t text[256] = {};
    DWORD length = ARRAYSIZE(text);
    Require(::MsiRecordGetStringW(record, field, text, &length));
    return text;
}

void Fold(MSIHANDLE database, const std::wstring& base, const std::wstring& localized)
{
    Handle target;
    OpenView(database, L"SELECT * FROM `" + base + L"`", target);
    Handle source;
    OpenView(database, L"SELECT * FROM `" + localized + L"`", source);
    for (;;)
    {
        Handle record;
        if (::MsiViewFetch(source.Get(), record.Slot()) != ERROR_SUCCESS) return;
        Require(::MsiViewModify(target.Get(), MSIMODIFY_ASSIGN, record.Get()));
    }
}

void SetCodePage(MSIHANDLE database)
{
    const std::wstring path = TemporaryFile(L".idt");
    const HANDLE file = ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    constexpr char kText[] = "\r\n\r\n1252\t_ForceCodepage\r\n";
    DWORD written = 0;
    ::WriteFile(file, kText, sizeof(kText) - 1, &written, nullptr);
    ::CloseHandle(file);
    const size_t slash = path.rfind(L'\\');
    Require(::MsiDatabaseImportW(database, path.substr(0, slash).c_str(), path.c_str() + slash + 1));
    ::DeleteFileW(path.c_str());
}

void TranslateByPlainCalls(const std::wstring& path)
{
    Handle database;
    Require(::MsiOpenDatabaseW(path.c_str(), MSIDBOPEN_TRANSACT, database.Slot()));
    std::vector<std::wstring> names;
    {
        Handle view;
        OpenView(database.Get(), L"SELECT `Name` FROM `_Tables`", view);
        for (;;)
        {
            Handle record;
            if (::MsiViewFetch(view.Get(), record.Slot()) != ERROR_SUCCESS) break;
            names.push_back(TextOf(record.Get(), 1));
        }
    }
    for (const std::wstring& name : names)
    {
        if (!name.ends_with(L"_de")) continue;
        Fold(database.Get(), name.substr(0, name.size() - 3), name);
        Execute(database.Get(), L"DROP TABLE `" + name + L"`");
        Execute(database.Get(), L"DELETE FROM `_Validation` WHERE `Table`='" + name + L"'");
    }
    Execute(database.Get(), L"DROP TABLE `ARVUILocale`");
    Execute(database.Get(), L"INSERT INTO `Property` (`Key`,`Text`) VALUES ('UILOCALE','de')");
    SetCodePage(database.Get());
    Require(::MsiDatabaseCommit(database.Get()));
}

// ---- The comparisons.

template <typename Work>
double TimeOnCopy(const Package& package, Work work)
{
    const PackageCopy copy(package);
    auto translate = [&] { work(copy.Path()); };
    const double seconds = bench::TimeOnce(translate, 1);
    copy.RequireTranslated();
    return seconds;
}

bench::Comparison CompareOnCopies(const Package& package, int rounds)
{
    std::vector<double> ours;
    std::vector<double> theirs;
    for (int round = 0; round < rounds; ++round)
    {
        ours.push_back(TimeOnCopy(package, TranslateByLibrary));
        theirs.push_back(TimeOnCopy(package, TranslateByPlainCalls));
    }
    return {bench::Median(std::move(ours)), bench::Median(std::move(theirs))};
}

void ReportMemory(const char* title, size_t ours, size_t theirs, double limit)
{
    const double ratio = static_cast<double>(ours) / static_cast<double>(theirs);
    std::printf("%-58s %9zu KB  %9zu KB  ratio %.3f  (at most %.2f)%s\n", title, ours / 1024, theirs / 1024, ratio,
        limit, ratio <= limit ? "" : "  MISSED");
    std::fflush(stdout);
}

// The most that the library itself allocates, in bytes.
size_t LibraryMemoryFor(const Package& package)
{
    g_memory = {};
    TimeOnCopy(package, TranslateByLibrary);
    return g_memory.most;
}

constexpr char kByLibrary[] = "library";
constexpr char kByPlainCalls[] = "plain";

// As a process of its own: its exit code tells the most memory it had, in KB.
int TranslateAsProcess(const std::string& way, const char* path)
{
    const std::wstring file(path, path + std::strlen(path));
    if (way == kByLibrary)
        TranslateByLibrary(file);
    else
        TranslateByPlainCalls(file);
    PROCESS_MEMORY_COUNTERS counters = {};
    counters.cb = sizeof(counters);
    return ::K32GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof(counters))
               ? static_cast<int>(counters.PeakWorkingSetSize / 1024)
               : 0;
}

// The most memory of a process that translates the package, the installer's included, in bytes.
size_t ProcessMemoryFor(const Package& package, const char* way)
{
    const PackageCopy copy(package);
    wchar_t program[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, program, MAX_PATH);
    std::wstring line = L"\"" + std::wstring(program) + L"\" " + std::wstring(way, way + std::strlen(way)) + L" \""
                        + copy.Path() + L"\"";
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process = {};
    if (!::CreateProcessW(program, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process))
        std::exit(1);
    ::WaitForSingleObject(process.hProcess, INFINITE);
    DWORD kilobytes = 0;
    ::GetExitCodeProcess(process.hProcess, &kilobytes);
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    copy.RequireTranslated();
    return static_cast<size_t>(kilobytes) * 1024;
}

void CompareTimes(const Package& small, const Package& large)
{
    const bench::Comparison smallTimes = CompareOnCopies(small, 9);
    bench::Report("package of 10,000 rows, against plain calls", smallTimes, 1.05);
    const bench::Comparison largeTimes = CompareOnCopies(large, 3);
    bench::Report("package of 100,000 rows, against plain calls", largeTimes, 1.05);
    // The installer takes longer for each row of a larger package; the library adds nothing to that.
    bench::Report("a row of 100,000 against one of 10,000", {largeTimes.ours / 100'000, smallTimes.ours / 10'000});
    bench::Report("a row of 100,000 against one of 10,000, by plain calls",
        {largeTimes.theirs / 100'000, smallTimes.theirs / 10'000});
}

void CompareMemory(const Package& large)
{
    const Package thin(200, 50);
    ReportMemory(
        "library's own memory, 500 rows a table against 50", LibraryMemoryFor(large), LibraryMemoryFor(thin), 1);
    ReportMemory("memory of a process, 100,000 rows, against plain calls", ProcessMemoryFor(large, kByLibrary),
        ProcessMemoryFor(large, kByPlainCalls), 1.05);
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc == 3) return TranslateAsProcess(argv[1], argv[2]);
    const Package small(20, 500);
    const Package large(200, 500);
    CompareTimes(small, large);
    CompareMemory(large);
    return 0;
}

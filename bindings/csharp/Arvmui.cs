// ARVMUI for .NET: the functions and records of arvmui64.dll. What each function does, and who frees what,
// is told in arvmui.h. For .NET Framework 4 and every later .NET, in 64-bit processes.
using System;
using System.Runtime.InteropServices;
using System.Text;

namespace Arvmui
{
    /// <summary>A loaded resource library, freed with FreeLibrary.</summary>
    public sealed class ResourceLibraryHandle : SafeHandle
    {
        /// <summary>Stands for the library's own resources where a function takes a resource library.</summary>
        public static readonly ResourceLibraryHandle Own = new ResourceLibraryHandle();

        public ResourceLibraryHandle() : base(IntPtr.Zero, true) {}

        public override bool IsInvalid { get { return handle == IntPtr.Zero; } }

        protected override bool ReleaseHandle() { return FreeLibrary(handle); }

        [DllImport("kernel32.dll", ExactSpelling = true)]
        private static extern bool FreeLibrary(IntPtr module);
    }

    /// <summary>Slots of LibraryDescriptor.LocaleHintTable.</summary>
    public enum LocaleHintSlot
    {
        CommandLine = 0,
        SettingsFile = 1,
        Browser = 2,
        Asked = 3
    }

    /// <summary>State of the library in this process: Marshal.PtrToStructure of ARVMUI_GetDescriptor.</summary>
    [StructLayout(LayoutKind.Sequential, CharSet = CharSet.Unicode)]
    public struct LibraryDescriptor
    {
        public IntPtr module;
        public IntPtr resourceLibrary;
        public IntPtr localeMapping;
        public uint tlsIndex;
        /// <summary>4 slots of 256 characters, one behind the other.</summary>
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 1024)] public char[] LocaleHintTable;
        public uint keyboardLanguageCount;
        public IntPtr keyboardLanguages;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 40)] public byte[] installerContext;
        public int showMessagePopup;
    }

    /// <summary>One locale that is offered to the user.</summary>
    [StructLayout(LayoutKind.Sequential, CharSet = CharSet.Unicode)]
    public struct LocaleEntry
    {
        public ushort LangID;
        [MarshalAs(UnmanagedType.ByValTStr, SizeConst = 64)] public string Locale;
        public uint LocaleLength;
        [MarshalAs(UnmanagedType.ByValTStr, SizeConst = 64)] public string EnglishName;
        [MarshalAs(UnmanagedType.ByValTStr, SizeConst = 64)] public string NativeName;
        [MarshalAs(UnmanagedType.ByValTStr, SizeConst = 256)] public string LanguageSelectionTitle;
        [MarshalAs(UnmanagedType.ByValTStr, SizeConst = 256)] public string LanguageSelectionDesc;
        [MarshalAs(UnmanagedType.ByValTStr, SizeConst = 32)] public string OK;
        [MarshalAs(UnmanagedType.ByValTStr, SizeConst = 32)] public string Cancel;
    }

    /// <summary>The shared memory through which a process hands its locale list to its children.</summary>
    [StructLayout(LayoutKind.Sequential, CharSet = CharSet.Unicode)]
    public struct LocaleRecord
    {
        public uint size;
        [MarshalAs(UnmanagedType.ByValTStr, SizeConst = 64)] public string locales;
    }

    /// <summary>Returns 0 to go on; locale is null when the user refused to choose a language.</summary>
    [UnmanagedFunctionPointer(CallingConvention.Winapi, CharSet = CharSet.Unicode)]
    public delegate uint LocaleCallbackW(string locale, IntPtr context);

    [UnmanagedFunctionPointer(CallingConvention.Winapi, CharSet = CharSet.Ansi)]
    public delegate uint LocaleCallbackA(string locale, IntPtr context);

    /// <summary>Returns 0 to go on.</summary>
    [UnmanagedFunctionPointer(CallingConvention.Winapi, CharSet = CharSet.Unicode)]
    public delegate uint FolderCallbackW(string folderName, IntPtr context);

    [UnmanagedFunctionPointer(CallingConvention.Winapi, CharSet = CharSet.Ansi)]
    public delegate uint FolderCallbackA(string folderName, IntPtr context);

    /// <summary>The functions of the library; Marshal.GetLastWin32Error tells the error of a failed call.</summary>
    public static class NativeMethods
    {
        private const string Library = "arvmui64.dll";

        /// <summary>In place of a section's name: the first section that has the key.</summary>
        public static readonly IntPtr AnySection = new IntPtr(-1);

        // Memory

        [DllImport(Library, SetLastError = true, ExactSpelling = true)]
        public static extern IntPtr ARVMUI_realloc(IntPtr memory, UIntPtr size);

        [DllImport(Library, SetLastError = true, ExactSpelling = true)]
        public static extern void ARVMUI_free(IntPtr memory);

        // Diagnostics

        [DllImport(Library, SetLastError = true, ExactSpelling = true)]
        public static extern void ARVMUI_SetMessagePopup(bool enable, out bool previous);

        [DllImport(Library, SetLastError = true, ExactSpelling = true)]
        public static extern void ARVMUI_LogSetCallTable(IntPtr table);

        // Locale queries

        [DllImport(Library, CharSet = CharSet.Unicode, SetLastError = true, ExactSpelling = true)]
        public static extern uint ARVMUI_EnumLocalesW(string locales, LocaleCallbackW callback, IntPtr context);

        [DllImport(Library, CharSet = CharSet.Ansi, SetLastError = true, ExactSpelling = true)]
        public static extern uint ARVMUI_EnumLocalesA(string locales, LocaleCallbackA callback, IntPtr context);

        [DllImport(Library, SetLastError = true, ExactSpelling = true)]
        public static extern ushort ARVMUI_GetLangID(ResourceLibraryHandle library);

        [DllImport(Library, CharSet = CharSet.Unicode, SetLastError = true, ExactSpelling = true)]
        public static extern uint ARVMUI_GetLocaleW(ResourceLibraryHandle library, StringBuilder buffer, uint capacity);

        [DllImport(Library, CharSet = CharSet.Ansi, SetLastError = true, ExactSpelling = true)]
        public static extern uint ARVMUI_GetLocaleA(ResourceLibraryHandle library, StringBuilder buffer, uint capacity);

        [DllImport(Library, SetLastError = true, ExactSpelling = true)]
        public static extern uint ARVMUI_GetACP(ushort language, ushort sortId);

        // Resource files

        [DllImport(Library, CharSet = CharSet.Unicode, SetLastError = true, ExactSpelling = true)]
        public static extern uint ARVMUI_GetResourceFileFormatW(
            IntPtr module, string fileName, StringBuilder buffer, uint capacity);

        [DllImport(Library, CharSet = CharSet.Ansi, SetLastError = true, ExactSpelling = true)]
        public static extern uint ARVMUI_GetResourceFileFormatA(
            IntPtr module, string fileName, StringBuilder buffer, uint capacity);

        [DllImport(Library, CharSet = CharSet.Unicode, SetLastError = true, ExactSpelling = true)]
        public static extern uint ARVMUI_GetResourceFileNameW(
            IntPtr module, string fileName, string locales, StringBuilder buffer, uint capacity);

        [DllImport(Library, CharSet = CharSet.Ansi, SetLastError = true, ExactSpelling = true)]
        public static extern uint ARVMUI_GetResourceFileNameA(
            IntPtr module, string fileName, string locales, StringBuilder buffer, uint capacity);

        [DllImport(Library, CharSet = CharSet.Unicode, SetLastError = true, ExactSpelling = true)]
        public static extern uint ARVMUI_EnumResourceFoldersW(IntPtr module, FolderCallbackW callback, IntPtr context);

        [DllImport(Library, CharSet = CharSet.Ansi, SetLastError = true, ExactSpelling = true)]
        public static extern uint ARVMUI_EnumResourceFoldersA(IntPtr module, FolderCallbackA callback, IntPtr context);

        // Resource libraries. GetResourceHandle hands out no reference, so its result is no ResourceLibraryHandle.

        [DllImport(Library, SetLastError = true, ExactSpelling = true)]
        public static extern IntPtr ARVMUI_GetDescriptor();

        [DllImport(Library, CharSet = CharSet.Unicode, SetLastError = true, ExactSpelling = true)]
        public static extern bool ARVMUI_LoadResourceLibraryW(
            IntPtr module, string fileName, string locales, out ResourceLibraryHandle library);

        [DllImport(Library, CharSet = CharSet.Ansi, SetLastError = true, ExactSpelling = true)]
        public static extern bool ARVMUI_LoadResourceLibraryA(
            IntPtr module, string fileName, string locales, out ResourceLibraryHandle library);

        [DllImport(Library, CharSet = CharSet.Unicode, SetLastError = true, ExactSpelling = true)]
        public static extern bool ARVMUI_GetResourceHandleW(
            IntPtr module, string fileName, string locales, out IntPtr library);

        [DllImport(Library, CharSet = CharSet.Ansi, SetLastError = true, ExactSpelling = true)]
        public static extern bool ARVMUI_GetResourceHandleA(
            IntPtr module, string fileName, string locales, out IntPtr library);

        // Command line

        [DllImport(Library, CharSet = CharSet.Unicode, SetLastError = true, ExactSpelling = true)]
        public static extern bool ARVMUI_ParseCommandLineW(StringBuilder commandLine);

        [DllImport(Library, CharSet = CharSet.Ansi, SetLastError = true, ExactSpelling = true)]
        public static extern bool ARVMUI_ParseCommandLineA(StringBuilder commandLine);

        [DllImport(Library, CharSet = CharSet.Unicode, SetLastError = true, ExactSpelling = true)]
        public static extern bool ARVMUI_ParseArgvW(ref int argc, [In, Out] IntPtr[] argv);

        [DllImport(Library, CharSet = CharSet.Ansi, SetLastError = true, ExactSpelling = true)]
        public static extern bool ARVMUI_ParseArgvA(ref int argc, [In, Out] IntPtr[] argv);

        [DllImport(Library, CharSet = CharSet.Unicode, SetLastError = true, ExactSpelling = true)]
        public static extern IntPtr ARVMUI_GetCommandLineW();

        [DllImport(Library, CharSet = CharSet.Ansi, SetLastError = true, ExactSpelling = true)]
        public static extern IntPtr ARVMUI_GetCommandLineA();

        [DllImport(Library, CharSet = CharSet.Unicode, SetLastError = true, ExactSpelling = true)]
        public static extern int ARVMUI_GetCommandLineOptionW(StringBuilder buffer, uint size);

        [DllImport(Library, CharSet = CharSet.Ansi, SetLastError = true, ExactSpelling = true)]
        public static extern int ARVMUI_GetCommandLineOptionA(StringBuilder buffer, uint size);

        // Text and settings files. Sections may be AnySection, and results hold several names: no strings.

        [DllImport(Library, CharSet = CharSet.Unicode, SetLastError = true, ExactSpelling = true)]
        public static extern bool ARVMUI_ReadTextFileW(IntPtr module, string fileName, string locales, out IntPtr text);

        [DllImport(Library, CharSet = CharSet.Unicode, SetLastError = true, ExactSpelling = true)]
        public static extern uint ARVMUI_TextEncodingToCodePageW(string name);

        [DllImport(Library, CharSet = CharSet.Ansi, SetLastError = true, ExactSpelling = true)]
        public static extern uint ARVMUI_TextEncodingToCodePageA(string name);

        [DllImport(Library, CharSet = CharSet.Unicode, SetLastError = true, ExactSpelling = true)]
        public static extern uint ARVMUI_GetPrivateProfileStringW(
            IntPtr section, string key, string defaultValue, [Out] char[] buffer, uint size, string fileName);

        [DllImport(Library, CharSet = CharSet.Ansi, SetLastError = true, ExactSpelling = true)]
        public static extern uint ARVMUI_GetPrivateProfileStringA(
            IntPtr section, byte[] key, byte[] defaultValue, [Out] byte[] buffer, uint size, string fileName);

        // Messages

        [DllImport(Library, CharSet = CharSet.Unicode, SetLastError = true, ExactSpelling = true)]
        public static extern uint ARVMUI_FormatMessageW(
            uint flags, IntPtr source, uint messageId, uint languageId, StringBuilder buffer, uint size,
            IntPtr arguments);

        [DllImport(Library, CharSet = CharSet.Ansi, SetLastError = true, ExactSpelling = true)]
        public static extern uint ARVMUI_FormatMessageA(
            uint flags, IntPtr source, uint messageId, uint languageId, StringBuilder buffer, uint size,
            IntPtr arguments);

        [DllImport(Library, CharSet = CharSet.Unicode, SetLastError = true, ExactSpelling = true)]
        public static extern int ARVMUI_MessageBoxW(IntPtr owner, string text, string caption, uint type);

        [DllImport(Library, CharSet = CharSet.Ansi, SetLastError = true, ExactSpelling = true)]
        public static extern int ARVMUI_MessageBoxA(IntPtr owner, string text, string caption, uint type);

        [DllImport(Library, SetLastError = true, ExactSpelling = true)]
        public static extern ushort ARVMUI_InitCommonControlsLanguage();

        // Settings dialog

        [DllImport(Library, CharSet = CharSet.Unicode, SetLastError = true, ExactSpelling = true)]
        public static extern bool ARVMUI_SettingDialogBoxW(IntPtr owner, IntPtr[] icons, IntPtr reserved, uint scope);

        // Custom actions of the Windows Installer

        [DllImport(Library, SetLastError = true, ExactSpelling = true)]
        public static extern uint ARVMUI_MSI_SetLocale(uint session);

        [DllImport(Library, SetLastError = true, ExactSpelling = true)]
        public static extern uint ARVMUI_MSI_SelectionDialogBoxPreview(uint session);

        [DllImport(Library, SetLastError = true, ExactSpelling = true)]
        public static extern uint ARVMUI_MSI_TranslateLocalPackage(uint session);

        [DllImport(Library, CharSet = CharSet.Ansi, SetLastError = true, ExactSpelling = true)]
        public static extern void ARVMUI_RUNDLL32_TranslateLocalPackage(
            IntPtr window, IntPtr instance, StringBuilder commandLine, int show);

        [DllImport(Library, SetLastError = true, ExactSpelling = true)]
        public static extern uint ARVMUI_MSI_StartFontResetter(uint session);

        [DllImport(Library, SetLastError = true, ExactSpelling = true)]
        public static extern uint ARVMUI_MSI_StopFontResetter(uint session);

        [DllImport(Library, CharSet = CharSet.Ansi, SetLastError = true, ExactSpelling = true)]
        public static extern void ARVMUI_RUNDLL32_FontResetter(
            IntPtr window, IntPtr instance, StringBuilder commandLine, int show);

        [DllImport(Library, SetLastError = true, ExactSpelling = true)]
        public static extern uint ARVMUI_MSI_SetDefaultCSFont(uint session);
    }
}

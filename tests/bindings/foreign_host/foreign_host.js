// Calls the library from a program that was not made for it, and prints what it answers as JSON.
//   node foreign_host.js RESULT_FILE
'use strict';

const fs = require('fs');
const path = require('path');
const koffi = require('koffi');

const folder = __dirname;
const library = koffi.load(path.join(folder, 'arvmui64.dll'));
const kernel = koffi.load('kernel32.dll');

const LocaleCallback = koffi.proto('uint32_t LocaleCallback(const char16_t *locale, void *context)');
const FolderCallback = koffi.proto('uint32_t FolderCallback(const char16_t *folder, void *context)');

const GetModuleHandle = kernel.func('uintptr_t GetModuleHandleW(const char16_t *name)');
const FreeLibrary = kernel.func('int FreeLibrary(uintptr_t module)');

const SetMessagePopup = library.func('void ARVMUI_SetMessagePopup(int enable, _Out_ int *previous)');
const EnumLocales = library.func(
    'uint32_t ARVMUI_EnumLocalesW(const char16_t *locales, LocaleCallback *callback, void *context)');
const EnumResourceFolders = library.func(
    'uint32_t ARVMUI_EnumResourceFoldersW(uintptr_t module, FolderCallback *callback, void *context)');
const LoadResourceLibrary = library.func(
    'int ARVMUI_LoadResourceLibraryW(uintptr_t module, const char16_t *file, const char16_t *locales, '
    + '_Out_ uintptr_t *library)');
const GetLocale = library.func('uint32_t ARVMUI_GetLocaleW(uintptr_t library, _Out_ uint16_t *buffer, uint32_t size)');
const GetLangID = library.func('uint16_t ARVMUI_GetLangID(uintptr_t library)');
const GetACP = library.func('uint32_t ARVMUI_GetACP(uint16_t language, uint16_t sort)');
const GetPrivateProfileString = library.func(
    'uint32_t ARVMUI_GetPrivateProfileStringW(const char16_t *section, const char16_t *key, '
    + 'const char16_t *missing, _Out_ uint16_t *buffer, uint32_t size, const char16_t *file)');
const ParseCommandLine = library.func('int ARVMUI_ParseCommandLineW(_Inout_ uint16_t *line)');
const GetCommandLineOption = library.func('int ARVMUI_GetCommandLineOptionW(_Out_ uint16_t *buffer, uint32_t size)');

// What a call wrote into a buffer of characters.
function text(size, call) {
    const buffer = new Uint16Array(size);
    const length = call(buffer, size);
    return String.fromCharCode(...buffer.subarray(0, length));
}

function candidates(locales, accepted) {
    const offered = [];
    const result = EnumLocales(locales, (locale) => {
        offered.push(locale);
        return locale === accepted ? 7 : 0;
    }, null);
    return { offered, result };
}

function folders(module) {
    const names = [];
    EnumResourceFolders(module, (name) => {
        names.push(name);
        return 0;
    }, null);
    return names.sort();
}

function loaded(module, locales) {
    const out = [0];
    if (!LoadResourceLibrary(module, null, locales, out)) return { library: out[0] };
    const answer = { tag: text(64, (buffer, size) => GetLocale(out[0], buffer, size)), language: GetLangID(out[0]) };
    FreeLibrary(out[0]);
    return answer;
}

function withoutOption(line) {
    const buffer = Uint16Array.from(line + '\0', (character) => character.charCodeAt(0));
    ParseCommandLine(buffer);
    return String.fromCharCode(...buffer.subarray(0, buffer.indexOf(0)));
}

function setting(section, key, missing) {
    const file = path.join(folder, 'settings.ini');
    return text(300, (buffer, size) => GetPrivateProfileString(section, key, missing, buffer, size, file));
}

const previous = [0];
SetMessagePopup(0, previous);
SetMessagePopup(0, previous);
const module_ = GetModuleHandle('arvmui64.dll');

const answers = {
    popupsAfterSwitchingOff: previous[0],
    candidates: candidates('pt-BR,1031', 'no such locale'),
    accepted: candidates('pt-BR,1031', 'pt'),
    folders: folders(module_),
    german: loaded(module_, 'de'),
    firstOfList: loaded(module_, 'no-such,fr,de'),
    missing: loaded(GetModuleHandle('kernel32.dll'), 'de'),
    russianCodePage: GetACP(0x0419, 0),
    greeting: setting('Texts', 'Greeting', ''),
    defaultValue: setting('Texts', 'Missing', 'nothing'),
    keys: setting('Texts', null, null),
    ownOption: text(80, GetCommandLineOption),
    ownTag: text(64, (buffer, size) => GetLocale(0, buffer, size)),
    commandLine: withoutOption('program.exe /uilocale:fr file.txt'),
    listOfProcess: candidates(null, 'fr'),
};

fs.writeFileSync(process.argv[2], JSON.stringify(answers, null, 1));

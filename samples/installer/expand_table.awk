# Writes one table of the package, ready for import, with its texts in one language:
#
#   awk -v mode=MODE -v suffix=SUFFIX -v english=FILE:FILE -v local=FILE:FILE -f expand_table.awk TABLE.idt
#
# In the table $(Name) stands for a text, or $(name) for what the build knows. The FILEs hold them (name, tab,
# text); where both have one of a name, "local" counts. By MODE the output is
#
#   table      the whole table
#   texts      the rows with texts, in a table whose name ends in the suffix
#   localized  the same, but only rows that are not as in English; no output when there are none
#   rows       all rows, to be appended to a table

BEGIN {
    FS = OFS = "\t"
    ORS = "\r\n"
    read_texts(english, englishTexts)
    read_texts(english, localTexts)
    read_texts(local, localTexts)
}

function fail(message)
{
    print message > "/dev/stderr"
    failed = 1
    exit 1
}

function read_texts(files, texts,    names, count, i, line, tab, status, text)
{
    count = split(files, names, ":")
    for (i = 1; i <= count; ++i)
    {
        while ((status = (getline line < names[i])) > 0)
        {
            if (line == "" || line ~ /^#/) continue
            tab = index(line, "\t")
            if (tab == 0) fail(names[i] ": no tab in \"" line "\"")
            text = substr(line, tab + 1)
            gsub(/\\n/, "\021\031", text)  # how a table's text file writes a line break
            texts[substr(line, 1, tab - 1)] = text
        }
        if (status < 0) fail(names[i] ": cannot be read")
        close(names[i])
    }
}

function expand(row, texts,    result, name)
{
    result = ""
    while (match(row, /\$\([^)]*\)/))
    {
        name = substr(row, RSTART + 2, RLENGTH - 3)
        if (!(name in texts)) fail(FILENAME ":" FNR ": no text \"" name "\"")
        result = result substr(row, 1, RSTART - 1) texts[name]
        row = substr(row, RSTART + RLENGTH)
    }
    return result row
}

FNR <= 2 {
    head = head $0 ORS
    next
}

FNR == 3 {
    $1 = $1 suffix
    head = head $0
    if (mode == "table") print head
    next
}

{
    row = expand($0, localTexts)
    if (mode == "texts" && !/\$\([A-Z]/) next
    if (mode == "localized" && row == expand($0, englishTexts)) next
    if ((mode == "texts" || mode == "localized") && !rows++) print head
    print row
}

END {
    if (failed) exit 1
}

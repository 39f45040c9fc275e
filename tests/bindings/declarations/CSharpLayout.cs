// Prints size and offsets of the records as .NET's marshalling sees them, as one JSON object.
using System;
using System.Collections.Generic;
using System.Reflection;
using System.Runtime.InteropServices;

public static class CSharpLayout
{
    private static string Describe(Type record)
    {
        var offsets = new List<string>();
        foreach (FieldInfo field in record.GetFields(BindingFlags.Instance | BindingFlags.Public))
            offsets.Add(string.Format("\"{0}\": {1}", field.Name, Marshal.OffsetOf(record, field.Name)));
        return string.Format("\"{0}\": {{\"size\": {1}, \"offsets\": {{{2}}}}}", record.Name, Marshal.SizeOf(record),
            string.Join(", ", offsets.ToArray()));
    }

    public static void Main()
    {
        Console.WriteLine("{" + Describe(typeof(Arvmui.LibraryDescriptor)) + ", " + Describe(typeof(Arvmui.LocaleEntry))
            + ", " + Describe(typeof(Arvmui.LocaleRecord)) + "}");
    }
}

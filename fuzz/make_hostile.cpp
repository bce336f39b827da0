// SPDX-License-Identifier: MIT
//
// make_hostile KIBIBYTES FOLDER writes inputs of that size, made to keep a reader busy, into FOLDER/TARGET.
#include <cstdio>
#include <cstdlib>

#include <QDir>
#include <QFile>

#include "Classes.h"
#include "RecordTree.h"

using namespace Fuzz;

namespace {

// Numbers of classes, and the bit that switches validation off.
constexpr char Document = 0, NodeNumber = 4, ValueItemNumber = 5, SelectionNumber = 13, StringListNumber = 16;
constexpr char Off = char(0x80);

std::string repeated(const std::string &head, const std::string &piece, const std::string &tail, std::size_t size)
{
    std::string text = head;
    while (text.size() + piece.size() + tail.size() < size)
        text += piece;
    return text + tail;
}

std::string numbered(const std::string &head, const std::string &before, const std::string &after,
                     const std::string &tail, std::size_t size)
{
    std::string text = head;
    for (int i = 0; text.size() + before.size() + after.size() + tail.size() + 12 < size; ++i)
        text += before + std::to_string(i) + after;
    return text + tail;
}

std::string member(std::uint32_t tag, const std::string &payload)
{
    std::string bytes;
    appendWord(bytes, tag);
    appendWord(bytes, std::uint32_t(payload.size()));
    return bytes + payload;
}

std::string counted(const std::string &items, std::uint32_t count)
{
    std::string bytes;
    appendWord(bytes, count);
    return bytes + items;
}

class Folder
{
public:
    explicit Folder(const QString &path) : m_path(path) { }

    void add(const char *target, const char *name, const std::string &bytes) const
    {
        const QString folder = m_path + QLatin1Char('/') + QLatin1String(target);
        QDir().mkpath(folder);
        QFile file(folder + QLatin1Char('/') + QLatin1String(name));
        if (!file.open(QIODevice::WriteOnly)
            || file.write(bytes.data(), qint64(bytes.size())) != qint64(bytes.size())) {
            std::fprintf(stderr, "%s: %s\n", qPrintable(file.fileName()), qPrintable(file.errorString()));
            std::exit(EXIT_FAILURE);
        }
    }

    void addXml(const char *name, char choice, const std::string &xml) const
    {
        add("xml_text", name, choice + xml);
        add("xml_file", name, choice + xml);
    }

    /// The same members as a record, in a representation, and compressed.
    void addRecord(const char *name, char choice, const std::string &members) const
    {
        std::string record;
        appendWord(record, std::uint32_t(members.size()));
        record += members;
        add("record", name, choice + record);

        std::string plain;
        appendWord(plain, leadingWord(choice & 0x7F));
        plain += record;
        add("representation", name, choice + plain);
        const QByteArray packed = qCompress(reinterpret_cast<const uchar *>(plain.data()), int(plain.size()), 9);
        std::string compressed = "RGZ1";
        appendWord(compressed, std::uint32_t(packed.size()));
        add("compressed", name, choice + compressed + packed.toStdString());
    }

private:
    static std::uint32_t leadingWord(int number)
    {
        const Class::Pointer object = classNumber(number).make();
        object->SetValidate(false);
        return wordAt(object->GetBinaryRepresentationAsQByteArray().toStdString(), 0);
    }

    QString m_path;
};

void addXmlDocuments(const Folder &folder, std::size_t size)
{
    folder.addXml("attributes", Document, numbered("<TunerProperties Version=\"1.1\"", " a", "=\"\"", "/>", size));
    // A quote outside of attributes must not hide them from the limit.
    for (const char *before : {"<!-- <a \" -->", "<?p <a ' ?>"})
        folder.addXml(before[1] == '!' ? "attributes-after-a-comment" : "attributes-after-an-instruction", Document,
                      numbered(std::string(before) + "<TunerProperties Version=\"1.1\"", " a", "=\"\"", "/>", size));
    folder.addXml("attributes-of-a-document-type", Document,
                  numbered("<!DOCTYPE a [", "<!ATTLIST a b", " ID ''>", "]><TunerProperties/>", size));
    folder.addXml("entities-of-a-document-type", Document,
                  numbered("<!DOCTYPE a [", "<!ENTITY e", " 'e'>", "]><TunerProperties/>", size));
    folder.addXml("attributes-per-element", NodeNumber, [&] {
        const std::string element = numbered("<x", " a", "=\"\"", "/>", 8000);
        return repeated("<Node>", element, "</Node>", size);
    }());
    folder.addXml("unknown-elements", NodeNumber, repeated("<Node>", "<x/>", "</Node>", size));
    folder.addXml("unknown-elements-in-the-root", Document | Off,
                  repeated("<TunerProperties Version=\"1.1\">", "<x/>", "</TunerProperties>", size));
    folder.addXml("nested", NodeNumber,
                  repeated("<Node>", "<x>", "", size / 2) + repeated("", "</x>", "</Node>", size / 2));
    folder.addXml("nested-differently", NodeNumber, numbered("<Node>", "<x", ">", "", size));
    folder.addXml("text", Document, repeated("<TunerProperties name=\"", "text ", "\"/>", size));
    folder.addXml("references", StringListNumber,
                  repeated("<ValueStringList><value>", "&amp;", "</value></ValueStringList>", size));
    folder.addXml("comments", NodeNumber, repeated("<Node>", "<!---->", "</Node>", size));
    folder.addXml("items", StringListNumber,
                  repeated("<ValueStringList>", "<StringItem value=\"\"/>", "</ValueStringList>", size));
    folder.addXml("values", NodeNumber,
                  repeated("<Node>", "<ValueItem><ValueInt id=\"\" value=\"1\"/></ValueItem>", "</Node>", size));
    folder.addXml("empty-values", NodeNumber | Off, repeated("<Node>", "<ValueItem/>", "</Node>", size));
    folder.addXml("replaced-values", ValueItemNumber,
                  repeated("<ValueItem>", "<ValueInt id=\"\" value=\"1\"/><ValueString id=\"\" value=\"\"/>",
                           "</ValueItem>", size));
    folder.addXml("repeated-members", SelectionNumber,
                  repeated("<ValueSelection>", "<id>a</id><value>1</value>", "</ValueSelection>", size));
    folder.addXml("namespaces", NodeNumber, numbered("<Node>", "<x xmlns:n", "=\"u\">", "", size));
    folder.addXml("namespaces-in-a-member", NodeNumber, numbered("<Node><id>", "<x xmlns:n", "=\"u\">", "", size));
    folder.addXml("namespaces-in-the-root", Document | Off,
                  numbered("<TunerProperties Version=\"1.1\">", "<x xmlns:n", "=\"u\">", "", size));
}

void addRecords(const Folder &folder, std::size_t size)
{
    constexpr std::uint32_t id = 0x2B262DC9, stringItems = 0x2940EBDD, valueItems = 0x4F71131F, intValue = 0x4ACA6514;
    const std::string word(4, '\0');

    folder.addRecord("empty-items", StringListNumber | Off, [&] {
        const std::string items = repeated("", word, "", size - 12);
        return member(stringItems, counted(items, std::uint32_t(items.size() / 4)));
    }());
    folder.addRecord("empty-values", NodeNumber | Off, [&] {
        const std::string items = repeated("", word, "", size - 12);
        return member(valueItems, counted(items, std::uint32_t(items.size() / 4)));
    }());
    folder.addRecord("values", NodeNumber | Off, [&] {
        const std::string item = member(intValue, "");
        std::string piece;
        appendWord(piece, std::uint32_t(item.size()));
        const std::string items = repeated("", piece + item, "", size - 12);
        return member(valueItems, counted(items, std::uint32_t(items.size() / (item.size() + 4))));
    }());
    folder.addRecord("replaced-values", ValueItemNumber | Off,
                     repeated("", member(intValue, "") + member(0x022B9478, ""), "", size));
    folder.addRecord("unknown-members", NodeNumber, repeated("", member(0x11111111, ""), "", size));
    folder.addRecord("text", NodeNumber, member(id, counted(std::string(size - 12, 'x'), std::uint32_t(size - 12))));
    folder.addRecord("repeated-members", NodeNumber, repeated("", member(id, counted("x", 1)), "", size));
    folder.addRecord("repeated-lists", StringListNumber, repeated("", member(stringItems, word), "", size));
    folder.addRecord("counts-that-lie", StringListNumber | Off,
                     repeated("", member(stringItems, counted("", 0x7FFFFFFF)), "", size));
}

void addSnapshots(const Folder &folder, std::size_t size)
{
    folder.add("snapshot", "zeros", repeated(std::string(1, NodeNumber | Off), std::string(1, '\0'), "", size));
    folder.add("snapshot", "ones", repeated(std::string(1, StringListNumber | Off), "\xFF", "", size));
    // all flags, a count beyond all bounds, and items of one byte and a null text
    folder.add(
        "snapshot", "items",
        repeated(std::string(1, StringListNumber | Off) + "\x07\x7F\xFF\xFF\xFF", "\x01\xFF\xFF\xFF\xFF", "", size));
    // values: two bytes of flags, no choice
    folder.add(
        "snapshot", "values",
        repeated(std::string(1, NodeNumber | Off) + "\x03\x7F\xFF\xFF\xFF", std::string("\x00\x00\xFF", 3), "", size));
    // values that chose a number, without any
    folder.add("snapshot", "chosen-values",
               repeated(std::string(1, NodeNumber | Off) + "\x03\x7F\xFF\xFF\xFF",
                        std::string("\x04\x00\x02\x00\xFF\xFF\xFF\xFF\x00\x00\x00\x00\x00\x00\x00\x00", 16), "", size));
}

void addJson(const Folder &folder, std::size_t size)
{
    const auto document = [](const std::string &members) { return R"({"TunerProperties":{)" + members; };
    const auto items = [&](const char *name, const std::string &head, const std::string &item,
                           const std::string &tail) {
        folder.add("json", name, repeated(document(head), item, item.substr(0, item.size() - 1) + tail + "}}", size));
    };
    items("empty-items", R"("Component":[)", "{},", "]");
    items("values", R"("Component":[{"Node":[{"ValueItem":[)", R"({"ValueInt":{}},)", "]}]}]");
    // a problem for every few bytes, with the identities of the items around it
    items("items-of-the-wrong-type", R"("Component":[)", "0,", "]");
    items("unknown-members", R"("Component":[{"Node":[)", R"({"id":"n","":0},)", "]}]");
    items("unknown-names", R"("StartupModes":{"StartupMode":[)", R"("",)", "]}");
    items("several-alternatives", R"("Component":[{"Node":[{"ValueItem":[)",
          R"({"ValueInt":0,"ValueFloat":{"id":"i","value":""},"ChoiceValueItem":0.5},)", "]}]}]");
    folder.add("json", "lines", repeated(document("\"\":"), "\n", "0}}", size));
    folder.add("json", "escapes", repeated(document("\"name\":\""), R"(\ud83d\ude00)", "\"}}", size));
    folder.add("json", "byte-order-marks", repeated(document("\"name\":\""), "\xEF\xBB\xBF", "\"}}", size));
    folder.add("json", "digits", repeated(document("\"quantity\":0."), "1", "}}", size));
    folder.add("json", "members", numbered(document(""), "\"", "\":0,", "\"x\":0}}", size));
    folder.add("json", "nested", repeated(document("\"name\":"), "[", "", size));
}

} // namespace

int main(int argc, char **argv)
{
    const int kibibytes = argc == 3 ? std::atoi(argv[1]) : 0;
    if (kibibytes < 64) {
        std::fputs("usage: make_hostile KIBIBYTES FOLDER (64 or more)\n", stderr);
        return EXIT_FAILURE;
    }
    const std::size_t size = std::size_t(kibibytes) * 1024;
    const Folder folder(QString::fromLocal8Bit(argv[2]));
    addXmlDocuments(folder, size);
    addRecords(folder, size);
    addSnapshots(folder, size);
    addJson(folder, size);
    return EXIT_SUCCESS;
}

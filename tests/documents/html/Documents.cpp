// SPDX-License-Identifier: MIT

/// html_documents FOLDER writes the documents that the tests in a browser look at, other than the examples:
///
///   hostile.json  what would be markup, script or worse in each text that a document has
///   texts.json    the texts, each of which the page has to show as it is
///   large.tpb     2,000 nodes
///   many.tpb      10,000 nodes with values of several kinds, in 100 components
///   long.tpb      the same nodes in one component
///   wide.tpb      600 components with a node each
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTextStream>

#include <jobxml/TunerProperties.h>
#include <jobxml/Visit.h>

#include <tunerdocuments/Document.h>

#include "Documents.h"

using JobXml::MemberEditor;
using JobXml::MemberKind;

namespace {

const QStringList &attacks()
{
    static const QStringList texts = {
        QStringLiteral("<script>window.ran = true</script>"),
        QStringLiteral("\"><img src=x onerror=\"window.ran = true\">"),
        QStringLiteral("'><svg onload='window.ran = true'></svg>"),
        QStringLiteral("javascript:window.ran=true"),
        QStringLiteral("</style><script>window.ran = true</script>"),
        QStringLiteral("</script><script>window.ran = true</script>"),
        QStringLiteral("]]><script>window.ran = true</script><![CDATA["),
        QStringLiteral("--><script>window.ran = true</script><!--"),
        QStringLiteral("\u2028window.ran = true\u2029//"),
        QStringLiteral("&#x3C;script&#x3E;window.ran = true&#x3C;/script&#x3E; &lt;b&gt; &amp;"),
        QStringLiteral("</textarea></title></bdi></summary></details></table><h1>not ours</h1>"),
        QStringLiteral("{{constructor.constructor('window.ran = true')()}} ${window.ran = true} `"),
        QStringLiteral("a\tb\nc\rd\u0001e\u007ff\u0085g\u202eh\u2066i \u05d0\u05d1 end"),
        QStringLiteral(" blanks  at   both ends "),
        QString(300, QLatin1Char('W')),
    };
    return texts;
}

/// Each text is the next one of the list, so that every one of them is the value of some member.
class Hostile
{
public:
    const QJsonArray &texts() const { return m_texts; }

    void fill(JobXml::DataObject &object)
    {
        JobXml::visit(object, [this](MemberEditor &member) { fill(member); });
    }

private:
    void fill(MemberEditor &member)
    {
        switch (member.GetKind()) {
        case MemberKind::Text: {
            const QString text =
                QString::number(m_texts.size()) + QLatin1Char(' ') + attacks().at(m_texts.size() % attacks().size());
            if (!member.SetValue(text))
                qFatal("a text is refused");
            m_texts.append(text);
            break;
        }
        case MemberKind::Object:
        case MemberKind::ObjectList:
        case MemberKind::Alternative:
            if (member.IsChosen()) {
                for (int i = 0; i < member.GetSize(); ++i)
                    fill(member.EditChild(i));
            }
            break;
        default:
            break;
        }
    }

    QJsonArray m_texts;
};

/// An item of each kind, with two items in each of its lists.
QVector<JobXml::ValueItem> anItemOfEachKind()
{
    QVector<JobXml::ValueItem> items;
    for (const QString &kind : JobXml::ValueItem::GetChoiceValueItems()) {
        JobXml::ValueItem item;
        item.SetValidate(false);
        JobXml::visit(item, [&](MemberEditor &member) {
            if (member.GetName() != kind)
                return;
            JobXml::visit(member.EditChild(), [](MemberEditor &own) {
                if (own.GetKind() == MemberKind::ObjectList) {
                    own.AppendChild();
                    own.AppendChild();
                }
            });
        });
        items.append(item);
    }
    return items;
}

JobXml::ValueItem unit(const char *text)
{
    JobXml::ValueString value;
    value.Setid(QStringLiteral("unit"));
    value.Setvalue(QString::fromUtf8(text));
    JobXml::ValueItem item;
    item.SetValueString(value);
    return item;
}

JobXml::ValueItem frequency(int i)
{
    JobXml::ValueNumericInt64 value;
    value.Setid(QStringLiteral("frequency"));
    value.Setvalue(9000 + qint64(i) * 799999);
    value.Setmin(9000);
    value.Setmax(8000000000);
    value.Setstep(1);
    JobXml::ValueItem item;
    item.SetValueNumericInt64(value);
    return item;
}

JobXml::ValueItem loss(int i)
{
    JobXml::ValueFloat value;
    value.Setid(QStringLiteral("loss"));
    value.Setvalue(float(i) / 4);
    JobXml::ValueItem item;
    item.SetValueFloat(value);
    return item;
}

JobXml::ValueItem engaged(int i)
{
    JobXml::ValueBoolean value;
    value.Setid(QStringLiteral("engaged"));
    value.Setvalue(i % 2 == 0);
    JobXml::ValueItem item;
    item.SetValueBoolean(value);
    return item;
}

JobXml::ValueItem selection(int i)
{
    JobXml::ValueSelection value;
    value.Setid(QStringLiteral("connector"));
    value.Setindex(i % 3);
    value.Setvalue(i % 3);
    value.Settext(QStringLiteral("X%1").arg(i % 3));
    for (int option = 0; option < 3; ++option) {
        JobXml::SelectionItem item;
        item.Setname(QStringLiteral("X%1").arg(option));
        item.Setvalue(option);
        value.AppendSelectionItem(item);
    }
    JobXml::ValueItem item;
    item.SetValueSelection(value);
    return item;
}

JobXml::Node aNodeOfSomeKind(int i)
{
    JobXml::Node node = aNode(QStringLiteral("node%1").arg(i), 0);
    switch (i % 4) {
    case 0:
        node.AppendValueItem(frequency(i));
        node.AppendValueItem(unit("Hz"));
        break;
    case 1:
        node.AppendValueItem(loss(i));
        node.AppendValueItem(unit("dB"));
        break;
    case 2:
        node.AppendValueItem(engaged(i));
        break;
    default:
        node.AppendValueItem(selection(i));
        break;
    }
    return node;
}

/// A document of 10,000 nodes with values of several kinds.
JobXml::TunerProperties manyNodes(int components)
{
    const int nodes = 10000 / components;
    JobXml::TunerProperties document = aDocument(1);
    document.ResetComponent();
    for (int i = 0; i < components; ++i) {
        JobXml::Component component = aComponent(QStringLiteral("component%1").arg(i), 0);
        for (int node = 0; node < nodes; ++node)
            component.AppendNode(aNodeOfSomeKind(i * nodes + node));
        document.AppendComponent(component);
    }
    return document;
}

bool write(const QString &fileName, const QByteArray &bytes)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

using namespace TunerDocuments;

int main(int argc, char *argv[])
{
    if (argc != 2) {
        QTextStream(stderr) << "usage: html_documents FOLDER\n";
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]) + QLatin1Char('/');

    JobXml::TunerProperties hostile = aDocument(6);
    hostile.SetValidate(false);
    hostile.AppendBandwidthSelection(aBandwidth(100));
    for (JobXml::Node &node : hostile.GetComponent()[0].GetNode())
        node.SetValueItem(anItemOfEachKind());
    Hostile texts;
    texts.fill(hostile);

    JobXml::TunerProperties large = aDocument(1999);
    large.AppendComponent(aComponent(QStringLiteral("Last"), 1));
    large.GetComponent()[1].GetNode()[0].Setid(QStringLiteral("needle"));

    JobXml::TunerProperties many = manyNodes(100);
    JobXml::TunerProperties whole = manyNodes(1);

    JobXml::TunerProperties wide = aDocument(1);
    for (int i = 1; i < 600; ++i)
        wide.AppendComponent(aComponent(QStringLiteral("component%1").arg(i), 1));

    const auto writeTagged = [&](const char *name, const JobXml::TunerProperties &document) {
        return write(folder + QLatin1String(name), Document(document).toBytes(Form::Tagged, {}));
    };
    const bool isWritten = write(folder + QStringLiteral("hostile.json"), Document(hostile).toBytes(Form::Json, {}))
        && write(folder + QStringLiteral("texts.json"), QJsonDocument(texts.texts()).toJson())
        && writeTagged("large.tpb", large) && writeTagged("many.tpb", many) && writeTagged("long.tpb", whole)
        && writeTagged("wide.tpb", wide);
    return isWritten ? 0 : 1;
}

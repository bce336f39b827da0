// SPDX-License-Identifier: MIT

/// html_documents FOLDER writes the documents that the tests in a browser look at, other than the examples:
///
///   hostile.json  what would be markup, script or worse in each text that a document has
///   texts.json    the texts, each of which the page has to show as it is
///   large.tpb     2,000 nodes
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

    const bool isWritten = write(folder + QStringLiteral("hostile.json"), Document(hostile).toBytes(Form::Json, {}))
        && write(folder + QStringLiteral("texts.json"), QJsonDocument(texts.texts()).toJson())
        && write(folder + QStringLiteral("large.tpb"), Document(large).toBytes(Form::Tagged, {}));
    return isWritten ? 0 : 1;
}

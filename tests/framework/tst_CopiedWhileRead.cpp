// SPDX-License-Identifier: MIT
#include <algorithm>
#include <functional>
#include <vector>

#include <QtTest>

#include "Documents.h"
#include "Encodings.h"

using namespace JobXml;

namespace {

/// A device that calls a function each time it is read, for example to copy the document that is being read.
class ObservingDevice : public QIODevice
{
public:
    /// An XML reader accepts fewer bytes than requested; a stream needs all of them.
    ObservingDevice(const QByteArray &bytes, qint64 mostAtOnce, std::function<void()> observe)
        : m_bytes(bytes), m_mostAtOnce(mostAtOnce), m_observe(std::move(observe))
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    bool isSequential() const override { return true; }
    bool atEnd() const override { return m_at == m_bytes.size() && QIODevice::atEnd(); }
    qint64 bytesAvailable() const override { return m_bytes.size() - m_at + QIODevice::bytesAvailable(); }

protected:
    qint64 readData(char *bytes, qint64 size) override
    {
        const int piece = int(std::min({size, m_mostAtOnce, qint64(m_bytes.size() - m_at)}));
        std::copy_n(m_bytes.constData() + m_at, piece, bytes);
        m_at += piece;
        m_observe();
        return piece;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    const QByteArray m_bytes;
    const qint64 m_mostAtOnce;
    const std::function<void()> m_observe;
    int m_at = 0;
};

enum class Form { Xml, Record, Snapshot };

template <class Object>
void read(Object &document, Form form, ObservingDevice &device, int size)
{
    if (form == Form::Xml) {
        QXmlStreamReader reader(&device);
        reader.readNextStartElement();
        document.ProcessXml(reader);
        return;
    }
    QDataStream stream(&device);
    if (form == Form::Record)
        document.SetBinary(stream, size);
    else
        document.SetVersionSpecificBinaryWithoutValidation(stream);
}

/// Reads an object from a device that copies it each time it is read, and releases data that the object may share.
template <class Object>
void readAndCopy(Object &object, Form form, const QByteArray &bytes)
{
    std::vector<Object> copies;
    std::vector<QByteArray> snapshotsOfCopies;
    ObservingDevice device(bytes, form == Form::Xml ? 16 : bytes.size(), [&] {
        copies.emplace_back();
        copies.back() = object;
        snapshotsOfCopies.push_back(snapshotOf(Object(copies.back())));
        if (copies.size() % 3 == 0)
            copies.front() = Object();
    });
    object.SetValidate(false);
    read(object, form, device, bytes.size());
    QVERIFY(copies.size() > 5);
    for (std::size_t i = 1; i < copies.size(); ++i)
        QCOMPARE(hex(snapshotOf(copies[i])), hex(snapshotsOfCopies[i]));
}

int nodesOf(const TunerProperties &document)
{
    int nodes = 0;
    for (const Component &component : document.GetComponent())
        nodes += component.GetNode().size();
    return nodes;
}

} // namespace

Q_DECLARE_METATYPE(Form)

/// A device's own code may use the document that is being read from it, and copy it by assignment.
class CopiedWhileReadTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void documentIsReadCompletelyAndItsCopiesStayUnchanged_data()
    {
        QTest::addColumn<Form>("form");
        QTest::newRow("XML") << Form::Xml;
        QTest::newRow("a record") << Form::Record;
        QTest::newRow("a snapshot") << Form::Snapshot;
    }

    void documentIsReadCompletelyAndItsCopiesStayUnchanged()
    {
        QFETCH(Form, form);
        TunerProperties source = aDocument(20);
        source.AppendBandwidthSelection(aBandwidth(5));
        source.Setname(QStringLiteral("name"));
        source.Setquantity(5);
        const QByteArray record = recordOf(source);
        const QByteArray bytes = form == Form::Xml ? source.GetXmlString().toUtf8()
            : form == Form::Record                 ? record.mid(4)
                                                   : snapshotOf(source);

        TunerProperties document;
        std::vector<TunerProperties> copies;
        std::vector<int> nodesOfCopies;
        ObservingDevice device(bytes, form == Form::Xml ? 16 : bytes.size(), [&] {
            copies.emplace_back();
            copies.back() = document;
            nodesOfCopies.push_back(nodesOf(copies.back()));
            QVERIFY(nodesOf(document) == nodesOfCopies.back());
            if (copies.size() % 3 == 0)
                copies.front() = TunerProperties(); // releases data that the document may share
        });
        read(document, form, device, bytes.size());
        document.SetValidate(false);
        source.SetValidate(false);
        QCOMPARE(document.GetXmlString(), source.GetXmlString());
        QVERIFY(document == source);
        QVERIFY(copies.size() > 20);
        for (std::size_t i = 1; i < copies.size(); ++i) {
            QCOMPARE(nodesOf(copies[i]), nodesOfCopies[i]);
            QVERIFY(nodesOfCopies[i] >= nodesOfCopies[i - 1] || i == 1);
        }
    }

    void itemIsReadCompletelyAndItsCopiesStayUnchanged_data()
    {
        QTest::addColumn<Form>("form");
        QTest::newRow("a record") << Form::Record;
        QTest::newRow("a snapshot") << Form::Snapshot;
    }

    void itemIsReadCompletelyAndItsCopiesStayUnchanged()
    {
        QFETCH(Form, form);
        ValueItem source;
        ValueSelection &selection = source.GetValueSelection();
        selection.Setid(QStringLiteral("id"));
        selection.Setvalue(2);
        selection.Settext(QStringLiteral("two"));
        selection.Setindex(1);
        for (const char *name : {"one", "two", "three"}) {
            SelectionItem item;
            item.Setname(QString::fromLatin1(name));
            item.Setvalue(1);
            selection.AppendSelectionItem(item);
        }
        ValueItem item;
        item.GetValueSelection().Settext(QStringLiteral("before"));
        readAndCopy(item, form, form == Form::Record ? recordOf(source).mid(4) : snapshotOf(source));
        QVERIFY(item == source);
    }

    void startupModesAreReadCompletelyAndTheirCopiesStayUnchanged_data()
    {
        QTest::addColumn<Form>("form");
        QTest::newRow("XML") << Form::Xml;
        QTest::newRow("a record") << Form::Record;
        QTest::newRow("a snapshot") << Form::Snapshot;
    }

    void startupModesAreReadCompletelyAndTheirCopiesStayUnchanged()
    {
        QFETCH(Form, form);
        StartupModes source;
        for (int mode = 0; mode < 11; ++mode)
            source.AppendStartupMode(StartupModes::StartupMode(mode));
        const QByteArray bytes = form == Form::Xml ? QByteArray(xmlOf(source).toUtf8())
            : form == Form::Record                 ? recordOf(source).mid(4)
                                                   : snapshotOf(source);
        StartupModes modes;
        readAndCopy(modes, form, bytes);
        QVERIFY(modes == source);

        // also as a member of a document that already has some
        TunerProperties sourceDocument;
        sourceDocument.SetStartupModes(source);
        sourceDocument.SetValidate(false);
        TunerProperties document;
        document.GetStartupModes().AppendStartupMode(StartupModes::StartupMode::Stop);
        readAndCopy(document, form,
                    form == Form::Xml          ? QByteArray(xmlOf(sourceDocument).toUtf8())
                        : form == Form::Record ? recordOf(sourceDocument).mid(4)
                                               : snapshotOf(sourceDocument));
        QCOMPARE(document.GetStartupModes().GetStartupMode().size(), 12);
    }

    void anObjectThatIsAssignedToWhileItIsReadStaysUsable_data()
    {
        startupModesAreReadCompletelyAndTheirCopiesStayUnchanged_data();
    }

    // This destroys the data that the object had when reading began.
    void anObjectThatIsAssignedToWhileItIsReadStaysUsable()
    {
        QFETCH(Form, form);
        TunerProperties source = aDocument(3);
        source.Setquantity(5);
        const QByteArray bytes = form == Form::Xml ? source.GetXmlString().toUtf8()
            : form == Form::Record                 ? recordOf(source).mid(4)
                                                   : snapshotOf(source);
        int requests = 0;
        const auto readAssigned = [&](int which) {
            TunerProperties document = aDocument(1);
            document.SetValidate(false);
            requests = 0;
            ObservingDevice device(bytes, form == Form::Xml ? 16 : bytes.size(), [&] {
                if (requests++ == which)
                    document = TunerProperties();
            });
            read(document, form, device, bytes.size());
            QVERIFY(!snapshotOf(document).isEmpty());
            QVERIFY(!xmlOf(document).isEmpty());
        };
        readAssigned(-1);
        const int all = requests;
        QVERIFY(all > 20);
        for (int which = 0; which < all; ++which)
            readAssigned(which);
    }

    void itemThatIsAssignedToWhileItIsReadReceivesTheRest()
    {
        const ValueItem source = anIntItem(7);
        const QByteArray record = recordOf(source).mid(4);
        for (int which = 0; which < 8; ++which) {
            ValueItem item;
            item.SetValidate(false);
            int requests = 0;
            ObservingDevice device(record, record.size(), [&] {
                if (requests++ == which)
                    item = ValueItem();
            });
            read(item, Form::Record, device, record.size());
            QVERIFY(requests >= 8);
            QVERIFY(item == source);
        }
    }

    void copiesLackTheItemThatIsBeingRead()
    {
        const TunerProperties source = aDocument(20);
        TunerProperties document;
        std::vector<int> seen;
        ObservingDevice device(TunerProperties(source).GetXmlString().toUtf8(), 16,
                               [&] { seen.push_back(std::as_const(document).GetComponent().size()); });
        read(document, Form::Xml, device, 0);
        QVERIFY(document == source);
        QVERIFY(std::is_sorted(seen.begin(), seen.end()));
        QCOMPARE(seen.front(), 0);
        // The component is one item of at least sixteen pieces, and joins the list only after it has been read.
        QVERIFY(std::count(seen.begin(), seen.end(), 0) > int(seen.size()) - 5);
    }
};

TEST_SUITE(CopiedWhileReadTest)
#include "tst_CopiedWhileRead.moc"

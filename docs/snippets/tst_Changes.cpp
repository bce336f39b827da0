// SPDX-License-Identifier: MIT
//
// The examples of comparing, patching and merging documents: the manual shows the marked parts, and the tests check
// their results.

#include <QtTest>

#include <tunerdocuments/Diff.h>
#include <tunerdocuments/Merge.h>
#include <tunerdocuments/Patch.h>

using namespace TunerDocuments;
using JobXml::TunerProperties;

namespace {

TunerProperties withQuantity(int quantity)
{
    TunerProperties document;
    document.SetValidate(false);
    document.Setquantity(quantity);
    return document;
}

//! [Patch]
/// Makes the change from one document to another one in a third. Returns a null string, or why it does not fit.
QString transfer(const TunerProperties &before, const TunerProperties &after, TunerProperties &document)
{
    try {
        Patch::between(before, after).apply(document);
        return QString();
    } catch (const PatchFailure &failure) {
        return failure.text(); // "quantity: expected 1, but it is 3"; the document is unchanged
    }
}
//! [Patch]

//! [UnmergedContent]
/// What merging would lose of theirs: "theirs.xml:3:40: Component[name=a]/...: 'abc' of value is not a number; ...".
QStringList lossesOfMerging(const MergeInput &base, const MergeInput &ours, const MergeInput &theirs)
{
    QStringList lines;
    const UnmergedContent content = unmergedContent(base, ours, theirs);
    for (const Finding &loss : content.losses)
        lines.append(loss.text(QStringLiteral("theirs.xml")));
    for (const Finding &comment : content.comments)
        lines.append(QStringLiteral("theirs.xml:%1: a comment is not merged").arg(comment.line));
    return lines;
}
//! [UnmergedContent]

MergeInput loaded(const QByteArray &xml)
{
    return {Document::fromBytes(xml, QStringLiteral("theirs.xml")), xml};
}

} // namespace

class ChangesSnippetsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changesAreTransferred()
    {
        TunerProperties document = withQuantity(1);
        document.Setname(QStringLiteral("third"));
        QCOMPARE(transfer(withQuantity(1), withQuantity(2), document), QString());
        QCOMPARE(document.Getquantity(), 2);
        QCOMPARE(document.Getname(), QStringLiteral("third"));
        document.Setquantity(3);
        QCOMPARE(transfer(withQuantity(1), withQuantity(2), document),
                 QStringLiteral("quantity: expected 1, but it is 3"));
    }

    void documentsAreMerged()
    {
        const TunerProperties base = withQuantity(1);
        const TunerProperties ours = withQuantity(2);
        TunerProperties theirs = withQuantity(3);
        theirs.Setname(QStringLiteral("theirs"));
        QStringList conflicts;
        //! [MergeResult]
        const MergeResult result =
            merge(base, ours, theirs); // result.document has the values of ours where they conflict
        for (const MergeConflict &conflict : result.conflicts)
            conflicts.append(conflict.text()); // "quantity: changed on both sides: ..."
        //! [MergeResult]
        QCOMPARE(conflicts,
                 QStringList{QStringLiteral("quantity: changed on both sides: 2 in ours, 3 in theirs, 1 in the base")});
        QCOMPARE(result.document.Getquantity(), 2);
        QCOMPARE(result.document.Getname(), QStringLiteral("theirs"));
    }

    void contentThatCannotBeMergedIsListed()
    {
        const MergeInput base = loaded("<TunerProperties Version=\"1.1\" quantity=\"1\"/>");
        const MergeInput theirs =
            loaded("<TunerProperties Version=\"1.1\" quantity=\"two\"><!-- why --></TunerProperties>");
        QCOMPARE(
            lossesOfMerging(base, base, theirs),
            (QStringList{QStringLiteral("theirs.xml:1:32: quantity: 'two' of quantity is not a number; it is read as "
                                        "0 [not-a-number]"),
                         QStringLiteral("theirs.xml:1: a comment is not merged")}));
    }
};

TEST_SUITE(ChangesSnippetsTest)
#include "tst_Changes.moc"

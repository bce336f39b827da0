// SPDX-License-Identifier: MIT
#include "Accessors.h"
#include "Encodings.h"
#include "ExceptionText.h"
#include "Suite.h"
#include "Threads.h"
#include "WholeTree.h"

using JobXml::DataObject;
using REPORTGENERATOR::Logger;
using LoggerPointer = std::shared_ptr<Logger>;

namespace {

/// The object of a thread, and everything else that its operations need. Anything that threads shared besides the
/// objects' data would order them.
struct Hand
{
    Hand(const ClassUnderTest &classOfObject, bool validates)
        : type(classOfObject), validate(validates), accessors(accessorsOf(type.staticName())), other(type.full()),
          xml(xmlOf(*other)), document(other->GetXmlString()), record(recordOf(*other)),
          representation(other->GetBinaryRepresentationAsQByteArray()),
          compressed(other->GetCompressedBinaryRepresentationAsQByteArray(9)), snapshot(snapshotOf(*other))
    {
    }

    /// A new object with this flag and logger, which shares the data of the source.
    ClassUnderTest::Pointer sharing(const DataObject &source) const
    {
        auto sharer = type.make();
        sharer->SetValidate(validate);
        sharer->SetLogger(logger);
        type.assign(*sharer, source);
        return sharer;
    }

    const ClassUnderTest &type;
    const bool validate;
    const LoggerPointer logger = std::make_shared<Logger>();
    const Accessors &accessors;
    const ClassUnderTest::Pointer other; // with every member set
    const QString xml;
    const QString document;
    const QByteArray record;
    QByteArray representation;
    QByteArray compressed;
    const QByteArray snapshot;
    ClassUnderTest::Pointer object;
};

struct Operation
{
    const char *name;
    QString (*run)(Hand &hand); // returns what there is to see besides the object's state
};

QString yesOrNo(bool yes)
{
    return yes ? QStringLiteral("yes") : QStringLiteral("no");
}

QString problemsOf(const DataObject &object)
{
    QString text;
    const QVector<JobXml::Problem> problems = object.GetProblems();
    for (const JobXml::Problem &problem : problems)
        text += problem.path.join(QLatin1Char('/')) + problem.message;
    return text;
}

/// Every value that a visitor receives.
QString valuesOf(const DataObject &object)
{
    QString text;
    visit(object, [&](const JobXml::MemberView &member) {
        QDebug(&text).noquote() << member.GetName() << member.GetValue() << member.GetSize() << member.IsSet();
        WholeTree::forEachChild(member, [&](const DataObject &child, int) { text += valuesOf(child); });
    });
    return text;
}

const Operation operations[] = {
    {"const getters and IsXSet", [](Hand &h) { return h.accessors.read(*h.object); }},
    {"setters and AppendX", [](Hand &h) { return h.accessors.store(*h.object), QString(); }},
    {"getters of references", [](Hand &h) { return h.accessors.modify(*h.object), QString(); }},
    {"ResetX", [](Hand &h) { return h.accessors.reset(*h.object), QString(); }},
    {"presence",
     [](Hand &h) {
         return yesOrNo(h.object->IsInitialized()) + yesOrNo(h.object->HasData()) + yesOrNo(h.object->AnyData());
     }},
    {"Reset()", [](Hand &h) { return h.object->Reset(), QString(); }},
    {"ResetToDefault()", [](Hand &h) { return h.object->ResetToDefault(), QString(); }},
    {"Check()", [](Hand &h) { return h.object->Check(), QString(); }},
    {"Check(true)", [](Hand &h) { return h.object->Check(true), QString(); }},
    {"GetProblems()", [](Hand &h) { return problemsOf(*h.object); }},
    {"SetValidate()", [](Hand &h) { return h.object->SetValidate(h.validate), QString(); }},
    {"SetLogger()", [](Hand &h) { return h.object->SetLogger(h.logger), QString(); }},
    {"ResetLogger()", [](Hand &h) { return h.object->ResetLogger(), QString(); }},
    {"GetXml()", [](Hand &h) { return xmlOf(*h.object); }},
    {"ProcessXml()", [](Hand &h) { return readXml(*h.object, h.xml), QString(); }},
    {"GetXmlString()", [](Hand &h) { return h.object->GetXmlString(); }},
    {"SetXmlString()", [](Hand &h) { return yesOrNo(h.object->SetXmlString(h.document, h.validate)); }},
    {"GetBinary()", [](Hand &h) { return hex(recordOf(*h.object)); }},
    {"SetBinary()", [](Hand &h) { return readRecord(*h.object, h.record), QString(); }},
    {"GetBinaryRepresentation()", [](Hand &h) { return hex(h.object->GetBinaryRepresentationAsQByteArray()); }},
    {"SetBinaryRepresentation()", [](Hand &h) { return yesOrNo(h.object->SetBinaryRepresentation(h.representation)); }},
    {"compressed representation",
     [](Hand &h) { return hex(h.object->GetCompressedBinaryRepresentationAsQByteArray(1)); }},
    {"reading the compressed one", [](Hand &h) { return yesOrNo(h.object->SetBinaryRepresentation(h.compressed)); }},
    {"snapshot", [](Hand &h) { return hex(snapshotOf(*h.object)); }},
    {"reading a snapshot", [](Hand &h) { return QString::number(readSnapshot(*h.object, h.snapshot)); }},
    {"MergeRGObject()", [](Hand &h) { return yesOrNo(h.object->MergeRGObject(*h.other)); }},
    {"merging it into another",
     [](Hand &h) {
         const auto target = h.type.copied(*h.other);
         return yesOrNo(target->MergeRGObject(*h.object)) + hex(snapshotOf(*target));
     }},
    {"==", [](Hand &h) { return yesOrNo(h.type.equal(*h.object, *h.other)); }},
    {"!= on the right", [](Hand &h) { return yesOrNo(h.type.different(*h.other, *h.object)); }},
    {"visit()", [](Hand &h) { return valuesOf(*h.object); }},
    {"changing by visit()",
     [](Hand &h) {
         visit(*h.object, [](JobXml::MemberEditor &member) { return member.SetValue(member.GetValue()); });
         return valuesOf(*h.object);
     }},
    {"to QDebug",
     [](Hand &h) {
         QString text;
         QDebug(&text) << *h.object;
         return text;
     }},
    {"copy construction", [](Hand &h) { return hex(snapshotOf(*h.type.copied(*h.object))); }},
    {"assignment to another",
     [](Hand &h) {
         const auto target = h.type.make();
         h.type.assign(*target, *h.object);
         return xmlOf(*target);
     }},
    {"assignment of another", [](Hand &h) { return h.type.assign(*h.object, *h.other), QString(); }},
    {"move construction", [](Hand &h) { return hex(snapshotOf(*h.type.moved(*h.object))); }},
    {"move assignment",
     [](Hand &h) {
         const auto target = h.type.copied(*h.other);
         h.type.moveAssign(*target, *h.object);
         h.type.moveAssign(*h.object, *target);
         return yesOrNo(target->IsInitialized());
     }},
    {"swap()",
     [](Hand &h) {
         const auto partner = h.type.copied(*h.other);
         h.type.swap(*h.object, *partner);
         return xmlOf(*partner);
     }},
    {"destruction", [](Hand &h) { return h.object = h.type.make(), QString(); }},
};
constexpr int operationCount = int(std::size(operations));

/// The object's state, with the flag and the logger of every object of its tree. Whether children have the logger of
/// the object whose data these were, or none, depends on who shared the data longest: copies have none.
QString stateOf(const DataObject &root, const LoggerPointer &own, const LoggerPointer &former)
{
    QString text;
    WholeTree::visit(root, [&](const DataObject &object) {
        const LoggerPointer logger = object.GetLogger();
        const char *const whose = logger == own ? "own" : !logger || logger == former ? "former or none" : "strange";
        text += yesOrNo(object.GetValidate()) + QLatin1Char(' ') + QLatin1String(whose) + QLatin1Char('\n');
    });
    return text + hex(snapshotOf(root));
}

/// Everything that a thread can observe of the operation.
QString outcome(const Operation &operation, Hand &hand, const LoggerPointer &former)
{
    QString text;
    const QString failure = thrownBy([&] { text = operation.run(hand); });
    return failure + text + QLatin1Char('\n') + stateOf(*hand.object, hand.logger, former);
}

constexpr int threadCount = 3;
constexpr int roundCount = operationCount * operationCount;

/// Each pair of operations meets in the first two threads; the third adds one that wanders.
const Operation &inRound(int round, int thread)
{
    const int choices[threadCount] = {round / operationCount, round % operationCount, round * 5 / 3 % operationCount};
    return operations[choices[thread]];
}

/// The objects of one round, of which each thread takes one, and what the threads saw.
struct Round
{
    ClassUnderTest::Pointer source; // if it still exists
    ClassUnderTest::Pointer objects[threadCount];
    QString seen[threadCount];
};

} // namespace

/// Objects that share their data are used by several threads, one each, in all ways, without a visible difference.
/// Meaningful with a thread sanitizer.
class EveryClassThreadsTest : public Suite
{
    Q_OBJECT

private Q_SLOTS:
    void everyOperationRunsConcurrentlyWithEveryOther();
};

void EveryClassThreadsTest::everyOperationRunsConcurrentlyWithEveryOther()
{
    const ClassUnderTest &current = type();
    const LoggerPointer sourcesLogger = std::make_shared<Logger>();
    const auto model = current.full();
    const auto makeSource = [&] {
        auto source = current.copied(*model);
        source->SetValidate(false);
        source->SetLogger(sourcesLogger);
        return source;
    };
    const QString sourcesState = stateOf(*makeSource(), sourcesLogger, nullptr);
    Hand hands[threadCount]{{current, true}, {current, false}, {current, true}};

    // The result with a single thread.
    QHash<QPair<const Operation *, bool>, QString> alone;
    for (const Operation &operation : operations) {
        for (Hand *hand : {&hands[0], &hands[1]}) {
            hand->object = hand->sharing(*makeSource());
            alone.insert({&operation, hand->validate}, outcome(operation, *hand, sourcesLogger));
        }
    }

    Round rounds[2]; // one is in use, while the one before is looked at and the next is made
    Barrier barrier(threadCount + 1);
    std::thread threads[threadCount];
    for (int i = 0; i < threadCount; ++i) {
        threads[i] = std::thread([&, i] {
            Hand &hand = hands[i];
            for (int round = 0; round < roundCount; ++round) {
                barrier.wait();
                hand.object = std::move(rounds[round % 2].objects[i]);
                rounds[round % 2].seen[i] = outcome(inRound(round, i), hand, sourcesLogger);
                hand.object.reset();
            }
            barrier.wait();
        });
    }

    const auto prepare = [&](Round &round, bool keepSource) {
        round.source = makeSource();
        for (int i = 0; i < threadCount; ++i)
            round.objects[i] = hands[i].sharing(*round.source);
        if (!keepSource)
            round.source.reset(); // so that one of the others finds itself the only owner
    };
    QStringList complaints;
    const auto lookAt = [&](const Round &round, int number) {
        for (int i = 0; i < threadCount; ++i) {
            const Operation &operation = inRound(number, i);
            const QString expected = alone.value({&operation, hands[i].validate});
            if (round.seen[i] != expected)
                complaints += QLatin1String(operation.name) + QStringLiteral(": ") + round.seen[i]
                    + QStringLiteral("\nalone: ") + expected;
        }
        if (round.source && stateOf(*round.source, sourcesLogger, nullptr) != sourcesState)
            complaints += QStringLiteral("the source has changed");
    };
    for (int round = 0; round <= roundCount; ++round) {
        if (round < roundCount)
            prepare(rounds[round % 2], round % 4 >= 2);
        barrier.wait(); // this round begins, and the one before has ended
        if (round > 0)
            lookAt(rounds[(round - 1) % 2], round - 1);
    }
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(complaints.mid(0, 3), QStringList()); // the others say the same
}

TEST_SUITE(EveryClassThreadsTest)
#include "tst_EveryClassThreads.moc"

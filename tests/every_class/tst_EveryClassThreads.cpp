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
struct Context
{
    Context(const ClassUnderTest &classOfObject, bool validates)
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
    QString (*run)(Context &context); // returns what there is to see besides the object's state
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
    {"const getters and IsXSet", [](Context &c) { return c.accessors.read(*c.object); }},
    {"setters and AppendX", [](Context &c) { return c.accessors.store(*c.object), QString(); }},
    {"getters of references", [](Context &c) { return c.accessors.modify(*c.object), QString(); }},
    {"ResetX", [](Context &c) { return c.accessors.reset(*c.object), QString(); }},
    {"presence",
     [](Context &c) {
         return yesOrNo(c.object->IsInitialized()) + yesOrNo(c.object->HasData()) + yesOrNo(c.object->AnyData());
     }},
    {"Reset()", [](Context &c) { return c.object->Reset(), QString(); }},
    {"ResetToDefault()", [](Context &c) { return c.object->ResetToDefault(), QString(); }},
    {"Check()", [](Context &c) { return c.object->Check(), QString(); }},
    {"Check(true)", [](Context &c) { return c.object->Check(true), QString(); }},
    {"GetProblems()", [](Context &c) { return problemsOf(*c.object); }},
    {"SetValidate()", [](Context &c) { return c.object->SetValidate(c.validate), QString(); }},
    {"SetLogger()", [](Context &c) { return c.object->SetLogger(c.logger), QString(); }},
    {"ResetLogger()", [](Context &c) { return c.object->ResetLogger(), QString(); }},
    {"GetXml()", [](Context &c) { return xmlOf(*c.object); }},
    {"ProcessXml()", [](Context &c) { return readXml(*c.object, c.xml), QString(); }},
    {"GetXmlString()", [](Context &c) { return c.object->GetXmlString(); }},
    {"SetXmlString()", [](Context &c) { return yesOrNo(c.object->SetXmlString(c.document, c.validate)); }},
    {"GetBinary()", [](Context &c) { return hex(recordOf(*c.object)); }},
    {"SetBinary()", [](Context &c) { return readRecord(*c.object, c.record), QString(); }},
    {"GetBinaryRepresentation()", [](Context &c) { return hex(c.object->GetBinaryRepresentationAsQByteArray()); }},
    {"SetBinaryRepresentation()",
     [](Context &c) { return yesOrNo(c.object->SetBinaryRepresentation(c.representation)); }},
    {"compressed representation",
     [](Context &c) { return hex(c.object->GetCompressedBinaryRepresentationAsQByteArray(1)); }},
    {"reading the compressed one", [](Context &c) { return yesOrNo(c.object->SetBinaryRepresentation(c.compressed)); }},
    {"snapshot", [](Context &c) { return hex(snapshotOf(*c.object)); }},
    {"reading a snapshot", [](Context &c) { return QString::number(readSnapshot(*c.object, c.snapshot)); }},
    {"MergeRGObject()", [](Context &c) { return yesOrNo(c.object->MergeRGObject(*c.other)); }},
    {"merging it into another",
     [](Context &c) {
         const auto target = c.type.copied(*c.other);
         return yesOrNo(target->MergeRGObject(*c.object)) + hex(snapshotOf(*target));
     }},
    {"==", [](Context &c) { return yesOrNo(c.type.equal(*c.object, *c.other)); }},
    {"!= on the right", [](Context &c) { return yesOrNo(c.type.different(*c.other, *c.object)); }},
    {"visit()", [](Context &c) { return valuesOf(*c.object); }},
    {"changing by visit()",
     [](Context &c) {
         visit(*c.object, [](JobXml::MemberEditor &member) { return member.SetValue(member.GetValue()); });
         return valuesOf(*c.object);
     }},
    {"to QDebug",
     [](Context &c) {
         QString text;
         QDebug(&text) << *c.object;
         return text;
     }},
    {"copy construction", [](Context &c) { return hex(snapshotOf(*c.type.copied(*c.object))); }},
    {"assignment to another",
     [](Context &c) {
         const auto target = c.type.make();
         c.type.assign(*target, *c.object);
         return xmlOf(*target);
     }},
    {"assignment of another", [](Context &c) { return c.type.assign(*c.object, *c.other), QString(); }},
    {"move construction", [](Context &c) { return hex(snapshotOf(*c.type.moved(*c.object))); }},
    {"move assignment",
     [](Context &c) {
         const auto target = c.type.copied(*c.other);
         c.type.moveAssign(*target, *c.object);
         c.type.moveAssign(*c.object, *target);
         return yesOrNo(target->IsInitialized());
     }},
    {"swap()",
     [](Context &c) {
         const auto partner = c.type.copied(*c.other);
         c.type.swap(*c.object, *partner);
         return xmlOf(*partner);
     }},
    {"destruction", [](Context &c) { return c.object = c.type.make(), QString(); }},
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
QString outcome(const Operation &operation, Context &context, const LoggerPointer &former)
{
    QString text;
    const QString failure = thrownBy([&] { text = operation.run(context); });
    return failure + text + QLatin1Char('\n') + stateOf(*context.object, context.logger, former);
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
    Context contexts[threadCount]{{current, true}, {current, false}, {current, true}};

    // The result with a single thread.
    QHash<QPair<const Operation *, bool>, QString> alone;
    for (const Operation &operation : operations) {
        for (Context *context : {&contexts[0], &contexts[1]}) {
            context->object = context->sharing(*makeSource());
            alone.insert({&operation, context->validate}, outcome(operation, *context, sourcesLogger));
        }
    }

    Round rounds[2]; // one is in use, while the one before is looked at and the next is made
    Barrier barrier(threadCount + 1);
    std::thread threads[threadCount];
    for (int i = 0; i < threadCount; ++i) {
        threads[i] = std::thread([&, i] {
            Context &context = contexts[i];
            for (int round = 0; round < roundCount; ++round) {
                barrier.wait();
                context.object = std::move(rounds[round % 2].objects[i]);
                rounds[round % 2].seen[i] = outcome(inRound(round, i), context, sourcesLogger);
                context.object.reset();
            }
            barrier.wait();
        });
    }

    const auto prepare = [&](Round &round, bool keepSource) {
        round.source = makeSource();
        for (int i = 0; i < threadCount; ++i)
            round.objects[i] = contexts[i].sharing(*round.source);
        if (!keepSource)
            round.source.reset(); // so that one of the others finds itself the only owner
    };
    QStringList complaints;
    const auto lookAt = [&](const Round &round, int number) {
        for (int i = 0; i < threadCount; ++i) {
            const Operation &operation = inRound(number, i);
            const QString expected = alone.value({&operation, contexts[i].validate});
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

// SPDX-License-Identifier: MIT
#include <QtTest>

#include "DocumentSamples.h"
#include "Heap.h"
#include "Surprises.h"

using namespace JobXml;
using namespace OutOfMemory;
using REPORTGENERATOR::Logger;

namespace {

using Document = Objects<TunerProperties>;

const Samples<TunerProperties> &documents()
{
    return samples<TunerProperties>();
}

// --- The input and the expected result of an operation ---------------------------------------------------------------

void nothing(Document &) { }

using Components = QVector<Component>;

/// The caller keeps the list of components, which shares its items with the document until that is next used.
void aHeldList(Document &o)
{
    o.held = std::make_shared<Components>(std::as_const(o.target).GetComponent());
}

bool heldListIsUnchanged(Document &o)
{
    const Components &held = *static_cast<Components *>(o.held.get());
    return held == documents().other.GetComponent() && held.constFirst().GetValidate() && !held.constFirst().GetLogger()
        && snapshotOf(held.constFirst()) == snapshotOf(documents().other.GetComponent().constFirst());
}

/// The target lacks two members, one of them in a nested object.
void somethingMissing(Document &o)
{
    o.target.Resettype();
    o.target.GetComponent().first().GetNode().first().Resetid();
}

bool answerIsTrue(Document &o)
{
    return o.answer;
}

bool isUnchanged(Document &o)
{
    return o.target == documents().other && snapshotOf(o.target) == documents().otherSnapshot;
}

bool isComplete(Document &o)
{
    return o.target == documents().complete && snapshotOf(o.target) == documents().snapshot;
}

bool isEmpty(Document &o)
{
    return !o.target.AnyData() && o.target == TunerProperties();
}

/// Whether flag and logger of every object are the root's.
bool followsRoot(const TunerProperties &root)
{
    return WholeTree::count(root,
                            [&](const DataObject &object) {
                                return object.GetValidate() == root.GetValidate()
                                    && object.GetLogger() == root.GetLogger();
                            })
        == WholeTree::size(root);
}

} // namespace

Q_DECLARE_METATYPE(Begins)
Q_DECLARE_METATYPE(Operation<TunerProperties>::Action)

/// Memory runs out while a document is copied, compared, checked, merged and reset, in every place once.
class OutOfMemoryStateTest : public QObject
{
    Q_OBJECT

    using Question = Operation<TunerProperties>::Question;
    using Action = Operation<TunerProperties>::Action;

private Q_SLOTS:
    void initTestCase()
    {
        addCopies();
        addQuestions();
        addChecks();
        addChanges();
        addPropagation();
    }

    void badAllocReachesTheCallerAndAllObjectsStayUsable_data() { addRows(m_operations); }
    void badAllocReachesTheCallerAndAllObjectsStayUsable()
    {
        QFETCH(int, operation);
        const int before = m_allocations;
        QVERIFY(isSurvived(m_operations.at(operation), &m_allocations));
        qInfo("%d allocations", m_allocations - before);
    }

    void noexceptFunctionsDoNotAllocate_data();
    void noexceptFunctionsDoNotAllocate();

    void cleanupTestCase() { qInfo("%d allocations, each failed alone and with all that follow", m_allocations); }

private:
    void add(const char *name, Begins target, Action prepare, Action perform, Question isRight,
             Leaves leaves = Leaves::Nothing, Question isUnharmed = {})
    {
        m_operations.append({name,
                             target,
                             leaves,
                             std::move(prepare),
                             std::move(perform),
                             std::move(isRight),
                             {},
                             std::move(isUnharmed)});
    }

    void addCopies()
    {
        const auto copy = [](Document &o) {
            const TunerProperties copied(o.target);
            o.answer = copied.IsInitialized();
        };
        add("copy", Begins::Filled, nothing, copy, answerIsTrue);
        add("copy, shared data", Begins::Shared, nothing, copy, answerIsTrue);
        add("copy, held list", Begins::Filled, aHeldList, copy, answerIsTrue, Leaves::Nothing, heldListIsUnchanged);
        add(
            "assign and read", Begins::Filled, nothing,
            [](Document &o) {
                TunerProperties assigned;
                assigned = o.target;
                o.answer = !assigned.Getbaseresource().isEmpty();
            },
            answerIsTrue);
        add(
            "assign and write", Begins::Filled, nothing,
            [](Document &o) {
                TunerProperties assigned;
                assigned = o.target;
                o.target.Setbaseresource(QStringLiteral("RX1")); // as it was
            },
            isUnchanged);
        add(
            "copy, assign and detach all", Begins::New, nothing,
            [](Document &o) {
                TunerProperties copied(o.source);
                o.target = copied;
                copied.Reset();
            },
            isComplete, Leaves::Parts);
    }

    void addQuestions()
    {
        const auto equal = [](Document &o) { o.answer = o.target == o.sharer; };
        add("==, shared data", Begins::Shared, nothing, equal, answerIsTrue);
        add(
            "!=, shared data", Begins::Shared, nothing, [](Document &o) { o.answer = o.target != o.source; },
            answerIsTrue);
        add("==, held list", Begins::Shared, aHeldList, equal, answerIsTrue, Leaves::Nothing, heldListIsUnchanged);
        const auto edit = [](Document &o) {
            visit(o.target, [](MemberEditor &member) {
                if (member.GetName() == QLatin1String("Component"))
                    member.EditChild(0);
            });
            o.answer = o.target.IsComponentSet();
        };
        add("EditChild, shared data", Begins::Shared, nothing, edit, answerIsTrue);
        add("EditChild, held list", Begins::Filled, aHeldList, edit, answerIsTrue, Leaves::Nothing,
            heldListIsUnchanged);
    }

    void addChecks()
    {
        const auto check = [](Document &o) { o.target.Check(); };
        add("Check, nothing there", Begins::New, nothing, check, [](Document &) { return true; });
        add("Check, shared data", Begins::Shared, nothing, check, isUnchanged);
        add("Check, held list", Begins::Filled, aHeldList, check, isUnchanged, Leaves::Nothing, heldListIsUnchanged);
        add(
            "Check, something missing", Begins::Shared, somethingMissing, check, [](Document &) { return true; },
            Leaves::Gaps);
        const auto problems = [](Document &o) {
            for (const Problem &problem : o.target.GetProblems())
                o.text += problem.path.join(QLatin1Char('/')) + problem.message + QLatin1Char('\n');
        };
        add("GetProblems, shared data", Begins::Shared, nothing, problems, isUnchanged);
        add(
            "GetProblems, something missing", Begins::Filled, somethingMissing, problems,
            [](Document &o) {
                return o.text
                    == QLatin1String("Component \"Preselector\"/Node 1Node: Please set id properly.\n"
                                     "TunerProperties: Please set type properly.\n");
            },
            Leaves::Gaps);
        add("GetProblems, nothing there", Begins::New, nothing, problems,
            [](Document &o) { return o.text.count(QLatin1Char('\n')) == 3; });
    }

    void addChanges()
    {
        const auto merge = [](Document &o) { o.answer = o.target.MergeRGObject(o.source); };
        const auto merged = [](Document &o) {
            return o.answer
                && std::as_const(o.target).GetComponent()
                == documents().other.GetComponent() + documents().complete.GetComponent();
        };
        add("merge", Begins::New, nothing, merge, isComplete, Leaves::Parts);
        add("merge, other data", Begins::Filled, nothing, merge, merged, Leaves::Parts);
        add("merge, shared data", Begins::Shared, nothing, merge, merged, Leaves::Parts);
        add("merge, held list", Begins::Filled, aHeldList, merge, merged, Leaves::Parts, heldListIsUnchanged);

        // An unset list with items in it: a snapshot can clear the flag, and reads no more here. The caller holds the
        // list, so that changing it makes copies first.
        add(
            "modify an unset list", Begins::Filled,
            [](Document &o) {
                readSnapshot(o.target, bytes("C0 00 00000006 0031002E0031 00000000 03 00000004 00520058"));
                aHeldList(o);
            },
            [](Document &o) { o.target.GetComponent(); }, [](Document &o) { return o.target.IsComponentSet(); },
            Leaves::Parts, [](Document &o) { return !o.target.IsComponentSet() && heldListIsUnchanged(o); });

        add(
            "Reset, shared data", Begins::Shared, nothing, [](Document &o) { o.target.Reset(); }, isEmpty);
        const auto resetToDefault = [](Document &o) { o.target.ResetToDefault(); };
        const auto isDefault = [](Document &o) { return o.target.IsquantitySet() && o.target.Getquantity() == 1; };
        add("ResetToDefault", Begins::New, nothing, resetToDefault, isDefault);
        add("ResetToDefault, shared data", Begins::Shared, nothing, resetToDefault, isDefault);
    }

    void addPropagation()
    {
        const auto setValidate = [](Document &o) { o.target.SetValidate(false); };
        const auto isPropagated = [](Document &o) {
            return !o.target.GetValidate() && followsRoot(o.target) && isUnchanged(o);
        };
        add("SetValidate, shared data", Begins::Shared, nothing, setValidate, isPropagated);
        add("SetValidate, held list", Begins::Filled, aHeldList, setValidate, isPropagated, Leaves::Nothing,
            heldListIsUnchanged);
        const auto aLogger = [](Document &o) { o.held = std::make_shared<Logger>(); };
        add(
            "SetLogger, shared data", Begins::Shared, aLogger,
            [](Document &o) { o.target.SetLogger(std::static_pointer_cast<Logger>(o.held)); },
            [](Document &o) { return o.target.GetLogger() == o.held && followsRoot(o.target) && isUnchanged(o); });
    }

    QVector<Operation<TunerProperties>> m_operations;
    int m_allocations = 0;
};

void OutOfMemoryStateTest::noexceptFunctionsDoNotAllocate_data()
{
    QTest::addColumn<Begins>("target");
    QTest::addColumn<Action>("prepare");
    QTest::addColumn<Action>("action");
    const auto row = [](const char *name, Begins target, const Action &action, const Action &prepare = nothing) {
        QTest::newRow(name) << target << prepare << action;
    };
    row("make", Begins::New, [](Document &) { const TunerProperties made; });
    row("destroy", Begins::Filled, [](Document &o) { o.target.~TunerProperties(), new (&o.target) TunerProperties; });
    row("assign", Begins::Filled, [](Document &o) { o.target = o.source; });
    row("assign to itself", Begins::Shared, [](Document &o) { o.target = std::as_const(o.target); });
    row("move", Begins::Shared, [](Document &o) {
        TunerProperties moved(std::move(o.target));
        o.target = std::move(moved);
    });
    row("swap", Begins::Shared, [](Document &o) {
        TunerProperties other;
        o.target.swap(other);
        other.swap(o.target);
    });
    row("query", Begins::Shared, [](Document &o) {
        o.answer = o.target.HasData() && o.target.AnyData() && o.target.IsInitialized() && o.target.IsComponentSet()
            && o.target.GetValidate() && !o.target.GetLogger() && o.target.IsValidname(QString());
    });
    row("read what is there", Begins::Filled, [](Document &o) {
        const TunerProperties &target = o.target;
        o.answer = target.Getbaseresource().isEmpty() || target.GetComponent().isEmpty()
            || target.GetComponent().at(0).GetNode().at(0).GetValueItem().at(0).GetValueInt().Getid().isEmpty();
    });
    row("Check", Begins::Filled, [](Document &o) { o.target.Check(); });
    row("Reset", Begins::Filled, [](Document &o) { o.target.Reset(); });
    row(
        "Reset, held list", Begins::Filled, [](Document &o) { o.target.Reset(); }, aHeldList);
    row(
        "reset the list, held", Begins::Filled, [](Document &o) { o.target.ResetComponent(); }, aHeldList);
}

namespace {

class Counter final : public Heap::Watcher
{
public:
    bool mayAllocate(std::size_t) override
    {
        ++allocations;
        return true;
    }

    int allocations = 0;
};

} // namespace

void OutOfMemoryStateTest::noexceptFunctionsDoNotAllocate()
{
    QFETCH(Begins, target);
    QFETCH(Action, prepare);
    QFETCH(Action, action);
    const Operation<TunerProperties> begins{{}, target, Leaves::Parts, prepare, action, answerIsTrue, {}, {}};
    ObjectsAttempt<TunerProperties> attempt(begins);
    Counter counter;
    Heap::watch(&counter);
    attempt.perform();
    Heap::watch(nullptr);
    QCOMPARE(counter.allocations, 0);
    QCOMPARE(attempt.complaint(false), QString());
}

TEST_SUITE(OutOfMemoryStateTest)
#include "tst_OutOfMemoryState.moc"

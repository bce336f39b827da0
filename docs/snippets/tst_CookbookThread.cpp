// SPDX-License-Identifier: MIT
//
// The recipe of the cookbook that passes a copy to another thread: the manual shows the marked part, and the test
// checks its result.

#include <future>

#include <QTemporaryDir>
#include <QtTest>

#include <jobxml/TunerProperties.h>

#include "ExampleDocument.h"

namespace {

//! [thread]
/// Saves in another thread while the caller continues to change its document. The future returns the error or null, and
/// throws for errors in the content.
std::future<QString> saveInBackground(const JobXml::TunerProperties &tuner, const QString &path)
{
    // A copy constructed object has data of its own at once, so the two objects share nothing from here on.
    return std::async(std::launch::async,
                      [copy = tuner, path] { return copy.SaveXml(path) ? QString() : copy.GetErrorString(); });
}
//! [thread]

} // namespace

class CookbookThread : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aCopyIsSavedInAnotherThread();
};

void CookbookThread::aCopyIsSavedInAnotherThread()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("receiver.xml"));
    const JobXml::TunerProperties original = receiver();
    JobXml::TunerProperties tuner = original;
    std::future<QString> saved = saveInBackground(tuner, path);
    tuner.Setquantity(99); // meanwhile
    tuner.GetComponent().clear();
    QCOMPARE(saved.get(), QString());

    JobXml::TunerProperties read;
    QVERIFY(read.LoadXml(path));
    QVERIFY(read == original);
    QVERIFY_THROWS_EXCEPTION(OutOfRangeException, saveInBackground(JobXml::TunerProperties(), path).get());
}

TEST_SUITE(CookbookThread)
#include "tst_CookbookThread.moc"

// SPDX-License-Identifier: MIT
#include "documents/json/JsonForm.h"

#include "Harness.h"

using namespace Fuzz;
using namespace TunerDocuments;

namespace {

/// Reads it, and returns whether it is a document.
bool isRead(JobXml::TunerProperties &document, const QByteArray &json)
{
    try {
        JsonForm::read(document, json);
        return true;
    } catch (const JsonFailure &failure) {
        require(!failure.text(QStringLiteral("document.json")).isEmpty(), "a failure is described");
        return false;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    const auto json = QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
    JobXml::TunerProperties document;
    if (!isRead(document, json)) {
        require(!document.AnyData(), "what is refused leaves the document as it was");
        return 0;
    }

    QByteArray composed;
    try {
        composed = JsonForm::compose(document);
    } catch (const JsonFailure &) {
        return 0; // a text that came in by an escape, and that UTF-8 cannot carry
    }
    JobXml::TunerProperties again;
    require(isRead(again, composed), "what is composed is read");
    require(JsonForm::compose(again) == composed, "what is composed is read to the same document");
    return 0;
}

// SPDX-License-Identifier: MIT
#include "documents/json/JsonForm.h"

#include "Harness.h"

using namespace Fuzz;
using namespace TunerDocuments;

namespace {

/// Reads it, and returns whether it is a document.
bool isRead(JobXml::TunerProperties &document, const QByteArray &json)
{
    JsonProblem last;
    qint64 described = 0;
    const qint64 count = JsonForm::read(document, json, [&](const JsonProblem &problem) {
        require(!problem.message.isEmpty(), "a problem is described");
        require(problem.line > last.line || (problem.line == last.line && problem.column >= last.column),
                "problems come in the order of the text");
        require(problem.line > 0 && problem.column > 0, "a problem has a place");
        last = problem;
        ++described;
    });
    require(described == count, "all problems are described");
    require(!last.isUnreadable || count == 1, "nothing is read of a text that is not JSON");
    return count == 0;
}

/// Every value is in the text where it says it is.
void checkPlaces(const Json &value, const QByteArray &text)
{
    const QByteArray itself = text.mid(int(value.textBegin()), int(value.textEnd() - value.textBegin()));
    require(JsonText::compact(JsonText::parse(itself)) == JsonText::compact(value), "a value is at its place");
    if (value.isList()) {
        for (const Json &item : value.items())
            checkPlaces(item, text);
    } else if (value.isObject()) {
        for (const Json::Member &member : value.members()) {
            const auto begin = int(member.value.memberBegin());
            const QByteArray pair = text.mid(begin, int(member.value.textEnd()) - begin);
            const Json alone = JsonText::parse('{' + pair + '}');
            require(alone.members().size() == 1 && alone.members().front().key == member.key,
                    "a member is at its place");
            checkPlaces(member.value, text);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    constexpr int large = 1 << 14; // every value is parsed again for each one that contains it
    const auto json = QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
    if (json.size() <= large) {
        try {
            checkPlaces(JsonText::parse(json), json);
        } catch (const JsonFailure &failure) {
            require(failure.line() > 0 && failure.column() > 0, "an error has a place");
        }
    }

    JobXml::TunerProperties document;
    if (!isRead(document, json)) {
        require(!document.AnyData(), "what is refused leaves the document as it was");
        return 0;
    }
    // A string of JSON is valid UTF-8, and an escape of half a character is refused, so it can be written.
    const QByteArray composed = JsonForm::compose(document);
    JobXml::TunerProperties again;
    require(isRead(again, composed), "what is composed is read");
    require(JsonForm::compose(again) == composed, "what is composed is read to the same document");
    return 0;
}

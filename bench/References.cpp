// SPDX-License-Identifier: MIT
#include "Operations.h"

#include <algorithm>

#include <QXmlStreamWriter>

#include "reference/SmallestBlocks.h"
#include "reference/StructRecords.h"
#include "reference/StructSnapshot.h"
#include "reference/TokenWalk.h"

namespace Bench {
namespace {

QString differs(const Sample &sample, const PlainDocument &document)
{
    return document == sample.plain ? QString() : QStringLiteral("the values read are not those written");
}

Operation tokenWalk()
{
    Operation operation;
    operation.name = "token walk";
    operation.prepare = [](Sample &sample) { return Run{[&sample] { walkTokens(sample.xml); }}; };
    operation.verify = [](Sample &sample) {
        // Except for attributes and blanks, and the tokens that frame the document, both must have seen the same
        // tokens.
        const auto isToken = [](const Token &token) { return token.type != Token::Type::Attribute; };
        const auto least = std::count_if(sample.tokens.begin(), sample.tokens.end(), isToken);
        return walkTokens(sample.xml) > least ? QString() : QStringLiteral("tokens are missing");
    };
    return operation;
}

Operation blocks()
{
    Operation operation;
    operation.name = "smallest blocks";
    operation.prepare = [](Sample &sample) {
        auto blocks = std::make_shared<std::vector<void *>>();
        return Run{[sizes = smallestBlocks(sample.plain), blocks] { makeAndFree(sizes, *blocks); }};
    };
    operation.verify = [](Sample &sample) {
        return smallestBlocks(sample.plain).size() > std::size_t(sample.nodes) ? QString()
                                                                               : QStringLiteral("blocks are missing");
    };
    return operation;
}

} // namespace

void addReferences(std::vector<Operation> &operations)
{
    const auto records = [](Sample &sample) { return sample.records; };
    const auto snapshot = [](Sample &sample) { return sample.snapshot; };
    operations.push_back(tokenWalk());
    operations.push_back(writer(
        "token writer", "", [](Sample &sample) { return writeTokens(sample.tokens); },
        [](Sample &sample) {
            QString xml;
            QXmlStreamWriter writer(&xml);
            sample.document.GetXml(writer);
            return xml;
        }));
    operations.push_back(writer(
        "token writer, formatted", "", [](Sample &sample) { return writeTokensFormatted(sample.tokens); },
        [](Sample &sample) { return QString::fromUtf8(sample.xml); }));
    operations.push_back(writer(
        "structs to records", "", [](Sample &sample) { return writeRecords(sample.plain); }, records));
    operations.push_back(reader<PlainDocument>(
        "records to structs", "",
        [](const Sample &sample, PlainDocument &document) { document = readRecords(sample.records); }, differs));
    operations.push_back(writer(
        "structs to snapshot", "", [](Sample &sample) { return writeSnapshot(sample.plain); }, snapshot));
    operations.push_back(reader<PlainDocument>(
        "snapshot to structs", "",
        [](const Sample &sample, PlainDocument &document) { document = readSnapshot(sample.snapshot); }, differs));
    operations.push_back(blocks());
}

} // namespace Bench

// SPDX-License-Identifier: MIT
#include <algorithm>

#include "../tests/framework/XmlSources.h"
#include "../tests/framework/XmlSpellings.h"
#include "Harness.h"
#include "RecordMutator.h"

using namespace Fuzz;

namespace {

constexpr std::size_t seedSize = 2; // the bytes before the document
constexpr std::size_t largest = 6000;

QByteArray documentIn(const quint8 *data, std::size_t size)
{
    return {reinterpret_cast<const char *>(data) + seedSize, int(size - seedSize)};
}

} // namespace

/// Reads a document by QXmlStreamReader and, if it is in the subset for that, in memory. The first two bytes are the
/// seed for the steps of reading.
extern "C" int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    if (size < seedSize || size > largest)
        return 0;
    const quint32 seed = quint32(data[0]) << 8 | quint32(data[1]);
    const QByteArray document = documentIn(data, size);
    const bool sharesTexts = seed % 2 != 0;
    const QString difference =
        XmlSources::difference(sharesTexts ? XmlSources::longEnoughToShareTexts(document) : document, seed);
    require(difference.isNull(), qPrintable(QStringLiteral("both ways of reading agree: ") + difference));
    return 0;
}

/// Plain mutations hardly keep a document well-formed, so documents are also made and changed as units.
extern "C" std::size_t LLVMFuzzerCustomMutator(quint8 *data, std::size_t size, std::size_t maxSize, unsigned seed)
{
    Random random(seed);
    const bool isPlain = size < seedSize || maxSize < largest / 4 || random.oneIn(2);
    if (isPlain)
        return mutatePlainly(data, size, maxSize, seed);
    const QByteArray made = XmlSpellings::document(random);
    const QByteArray document = random.oneIn(8) ? made : XmlSpellings::mutated(random, documentIn(data, size), made);
    const std::size_t taken = std::min(maxSize - seedSize, std::size_t(document.size()));
    std::copy_n(document.constData(), taken, data + seedSize);
    return seedSize + taken;
}

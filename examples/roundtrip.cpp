// SPDX-License-Identifier: MIT
//
// Writes and reads a tuner description in one encoding after the other, checks that it stays the same document, and
// prints size and time of each encoding.
//
//     roundtrip FILE.xml

#include <algorithm>
#include <cstdio>
#include <exception>
#include <functional>
#include <vector>

#include <QByteArray>
#include <QDataStream>
#include <QElapsedTimer>
#include <QIODevice>
#include <QString>

#include <jobxml/TunerProperties.h>

namespace {

using JobXml::TunerProperties;

struct Encoding
{
    const char *name;
    std::function<QByteArray(TunerProperties &)> write;
    std::function<bool(TunerProperties &, QByteArray &)> read;
};

QByteArray writeSnapshot(const TunerProperties &tuner)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_15);
    tuner.GetVersionSpecificBinaryWithoutValidation(stream);
    return bytes;
}

bool readSnapshot(TunerProperties &tuner, const QByteArray &bytes)
{
    QDataStream stream(bytes);
    stream.setVersion(QDataStream::Qt_5_15);
    tuner.SetVersionSpecificBinaryWithoutValidation(stream);
    return stream.status() == QDataStream::Ok && stream.atEnd(); // the snapshot itself carries no length
}

const std::vector<Encoding> &encodings()
{
    static const std::vector<Encoding> all{
        {"XML", [](TunerProperties &tuner) { return tuner.GetXmlString().toUtf8(); },
         [](TunerProperties &tuner, QByteArray &bytes) { return tuner.SetXmlString(QString::fromUtf8(bytes), true); }},
        {"tagged", [](TunerProperties &tuner) { return tuner.GetBinaryRepresentationAsQByteArray(); },
         [](TunerProperties &tuner, QByteArray &bytes) { return tuner.SetBinaryRepresentation(bytes); }},
        {"compressed", [](TunerProperties &tuner) { return tuner.GetCompressedBinaryRepresentationAsQByteArray(6); },
         [](TunerProperties &tuner, QByteArray &bytes) { return tuner.SetBinaryRepresentation(bytes); }},
        {"snapshot", [](TunerProperties &tuner) { return writeSnapshot(tuner); }, readSnapshot},
    };
    return all;
}

/// The median over some hundred runs, in microseconds: a single run mostly measures cold caches.
double microseconds(const std::function<void()> &work)
{
    constexpr std::size_t runs = 201;
    std::vector<qint64> times(runs);
    for (qint64 &time : times) {
        QElapsedTimer timer;
        timer.start();
        work();
        time = timer.nsecsElapsed();
    }
    const auto middle = times.begin() + runs / 2;
    std::nth_element(times.begin(), middle, times.end());
    return static_cast<double>(*middle) / 1000.0;
}

/// Writes `tuner`, reads it back and replaces it with the copy that was read, so that the next encoding starts from the
/// result of this one. Returns whether nothing was lost.
bool passThrough(const Encoding &encoding, TunerProperties &tuner)
{
    QByteArray bytes = encoding.write(tuner);
    TunerProperties copy;
    if (bytes.isEmpty() || !encoding.read(copy, bytes)) {
        std::fprintf(stderr, "roundtrip: %s cannot be read back: %s\n", encoding.name,
                     qPrintable(copy.GetErrorString()));
        return false;
    }
    if (!(copy == tuner)) {
        std::fprintf(stderr, "roundtrip: %s reads back as another document\n", encoding.name);
        return false;
    }
    if (encoding.write(copy) != bytes) {
        std::fprintf(stderr, "roundtrip: %s is written with other bytes the second time\n", encoding.name);
        return false;
    }

    const double writing = microseconds([&] { encoding.write(tuner); });
    const double reading = microseconds([&] {
        TunerProperties fresh;
        encoding.read(fresh, bytes);
    });
    std::printf("  %-12s %9d %12.1f %12.1f\n", encoding.name, int(bytes.size()), writing, reading);
    tuner = copy;
    return true;
}

int run(const QString &path)
{
    TunerProperties loaded;
    if (!loaded.LoadXml(path)) {
        std::fprintf(stderr, "roundtrip: %s\n", qPrintable(loaded.GetErrorString()));
        return 1;
    }
    const QByteArray direct = loaded.GetXmlString().toUtf8();

    std::printf("  encoding         bytes     write µs      read µs\n");
    TunerProperties tuner = loaded;
    for (const Encoding &encoding : encodings()) {
        if (!passThrough(encoding, tuner))
            return 1;
    }

    if (!(tuner == loaded) || tuner.GetXmlString().toUtf8() != direct) {
        std::fprintf(stderr, "roundtrip: the document has changed on its way through all encodings\n");
        return 1;
    }
    std::printf("\n  Equal after every step, and the XML at the end is the XML at the start, byte for byte.\n");
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: roundtrip FILE.xml\n");
        return 2;
    }
    try {
        return run(QString::fromLocal8Bit(argv[1]));
    } catch (const std::exception &exception) { // errors in the content of the document
        std::fprintf(stderr, "roundtrip: %s\n", exception.what());
        return 1;
    }
}

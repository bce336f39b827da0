// SPDX-License-Identifier: MIT
//
// Measures every operation of the library beside its reference and its peers, on documents of its own corpus:
//
//   tunerproperties_bench [--sizes 1000,10000] [--shape tree|flat] [OPTIONS OF GOOGLE BENCHMARK]    times them
//   valgrind --tool=callgrind --instr-atstart=no tunerproperties_bench --instructions N
//                                                                               counts instructions, by callgrind
//   tunerproperties_bench_memory --memory N                                     counts what is on the heap
//   tunerproperties_bench --save FILE --nodes N                                 saves a document as XML (tree)
//
// Before anything is measured, the results of writers and readers are verified.
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string_view>
#include <thread>

#include <benchmark/benchmark.h>

#include <QByteArray>
#include <QFile>

#include "Instructions.h"
#include "Memory.h"
#include "Operations.h"

using namespace Bench;

namespace {

void verify(const std::vector<Operation> &all, Sample &sample)
{
    for (const Operation &operation : all) {
        QString difference;
        try {
            difference = operation.verify(sample);
        } catch (const std::exception &exception) {
            difference = QString::fromUtf8(exception.what());
        }
        if (!difference.isNull())
            throw std::runtime_error(operation.name + ": " + difference.toStdString());
    }
}

/// In a thread of its own, so that its blocks come from a part of the heap of their own: the state of the heap after
/// building and verifying it must not change the cost of malloc and free in the operations. Blocks scattered over a
/// used heap take twice the time.
std::unique_ptr<Sample> makeSample(const std::vector<Operation> &all, Shape shape, int nodes)
{
    std::unique_ptr<Sample> sample;
    std::exception_ptr failure;
    std::thread([&] {
        try {
            sample = std::make_unique<Sample>(shape, nodes);
            verify(all, *sample);
        } catch (...) {
            failure = std::current_exception();
        }
    }).join();
    if (failure)
        std::rethrow_exception(failure);
    return sample;
}

void time(const Operation &operation, Sample &sample)
{
    const std::string name = operation.name + '/' + nameOf(sample.shape) + '/' + std::to_string(sample.nodes);
    benchmark::RegisterBenchmark(name.c_str(), [&operation, &sample](benchmark::State &state) {
        const Run prepared = operation.prepare(sample);
        for (auto _ : state)
            prepared.run();
    })->Unit(benchmark::kMicrosecond);
}

int timedForm(const std::vector<Operation> &all, const std::vector<int> &sizes, const QByteArray &onlyShape, int argc,
              char *argv[])
{
    std::vector<std::unique_ptr<Sample>> samples;
    for (const int size : sizes) {
        for (const Shape shape : {Shape::Tree, Shape::Flat}) {
            if (!onlyShape.isNull() && onlyShape != nameOf(shape))
                continue;
            samples.push_back(makeSample(all, shape, size));
            for (const Operation &operation : all) {
                if (operation.isTimed)
                    time(operation, *samples.back());
            }
        }
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

int sizeOf(const QByteArray &text)
{
    const int size = text.toInt();
    if (size < 10 || size > 100000)
        throw std::runtime_error("a document must have 10 to 100000 nodes, not '" + text.toStdString() + "'");
    return size;
}

std::vector<int> sizesOf(const QByteArray &text)
{
    std::vector<int> sizes;
    for (const QByteArray &size : text.split(','))
        sizes.push_back(sizeOf(size));
    return sizes;
}

void save(const QByteArray &path, int nodes)
{
    JobXml::TunerProperties made = document(Shape::Tree, nodes);
    if (!made.SaveXml(QFile::decodeName(path)))
        throw std::runtime_error(made.GetErrorString().toStdString());
}

/// The value of an option, which is removed from the arguments; null if there is none.
QByteArray takeOption(std::string_view name, int &argc, char *argv[])
{
    for (int i = 1; i + 1 < argc; ++i) {
        if (argv[i] == name) {
            const QByteArray value(argv[i + 1]);
            std::copy(argv + i + 2, argv + argc + 1, argv + i);
            argc -= 2;
            return value;
        }
    }
    return {};
}

int run(int argc, char *argv[])
{
    const QByteArray savedFile = takeOption("--save", argc, argv);
    if (!savedFile.isNull()) {
        save(savedFile, sizeOf(takeOption("--nodes", argc, argv)));
        return 0;
    }
    const std::vector<Operation> all = operations();
    const QByteArray instructions = takeOption("--instructions", argc, argv);
    const QByteArray memory = takeOption("--memory", argc, argv);
    const QByteArray sizes = takeOption("--sizes", argc, argv);
    const QByteArray onlyShape = takeOption("--shape", argc, argv);
    if (instructions.isNull() && memory.isNull())
        return timedForm(all, sizesOf(sizes.isNull() ? "1000,10000" : sizes), onlyShape, argc, argv);

    for (const int size : sizesOf(instructions.isNull() ? memory : instructions)) {
        for (const Shape shape : {Shape::Tree, Shape::Flat}) {
            const std::unique_ptr<Sample> sample = makeSample(all, shape, size);
            if (instructions.isNull())
                countMemory(all, *sample);
            else
                countInstructions(all, *sample);
        }
    }
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    try {
        return run(argc, argv);
    } catch (const std::exception &exception) {
        std::fprintf(stderr, "%s: %s\n", argv[0], exception.what());
        return 1;
    }
}

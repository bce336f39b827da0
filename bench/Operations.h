// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Sample.h"

namespace Bench {

/// A prepared operation: what is measured, and what has to be done before each time without being measured.
struct Run
{
    std::function<void()> run;
    std::function<void()> before = {};
};

/// Something to measure: an operation of the library, a reference or a peer.
struct Operation
{
    std::string name;
    std::string reference; ///< the name of the operation that it is measured against; empty for references

    std::function<Run(Sample &)> prepare;
    /// Runs it once and compares the result with the expected one; null if they are the same, else the difference.
    std::function<QString(Sample &)> verify;
    /// For readers: reads once and returns the result, so that its heap use can be measured.
    std::function<std::shared_ptr<void>(const Sample &)> keep = {};

    bool isTimed = true;
    bool hasInstructions = true; ///< false if it mostly waits for the system
};

/// All of them: the library's, the references, the peers that were found.
std::vector<Operation> operations();

/// A reader: `read` reads a sample into a new Result, which is destroyed at the end of the run, `differs` is verify().
template <class Result, class Read, class Differs>
Operation reader(const char *name, const char *reference, Read read, Differs differs)
{
    Operation operation;
    operation.name = name;
    operation.reference = reference;
    operation.prepare = [read](Sample &sample) {
        return Run{[read, &sample] {
            Result result;
            read(sample, result);
        }};
    };
    operation.keep = [read](const Sample &sample) {
        const auto result = std::make_shared<Result>();
        read(sample, *result);
        return result;
    };
    operation.verify = [read, differs](Sample &sample) {
        Result result;
        read(sample, result);
        return differs(sample, result);
    };
    return operation;
}

/// A writer: `write` returns a text or bytes for a sample, which have to equal `expected` of it.
template <class Write, class Expected>
Operation writer(const char *name, const char *reference, Write write, Expected expected)
{
    Operation operation;
    operation.name = name;
    operation.reference = reference;
    operation.prepare = [write](Sample &sample) { return Run{[write, &sample] { write(sample); }}; };
    operation.verify = [write, expected](Sample &sample) {
        return write(sample) == expected(sample) ? QString() : QStringLiteral("other bytes are written");
    };
    return operation;
}

/// The parts of operations().
void addReferences(std::vector<Operation> &operations);
void addQtXml(std::vector<Operation> &operations);
void addPugixml(std::vector<Operation> &operations);
void addCodeSynthesis(std::vector<Operation> &operations);
void addProtobuf(std::vector<Operation> &operations);

} // namespace Bench

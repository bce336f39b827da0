// SPDX-License-Identifier: MIT
#include <cstdio>

#include <QFile>

#include "model/Model.h"

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fputs("usage: tunerproperties_model FILE\nWrites the list of the model as JSON.\n", stderr);
        return 2;
    }
    QFile file(QFile::decodeName(argv[1]));
    const QByteArray model = modelAsJson();
    if (!file.open(QIODevice::WriteOnly) || file.write(model) != model.size() || !file.flush()) {
        std::fprintf(stderr, "cannot write '%s': %s\n", argv[1], qUtf8Printable(file.errorString()));
        return 1;
    }
    return 0;
}

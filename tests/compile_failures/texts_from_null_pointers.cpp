// SPDX-License-Identifier: MIT
#include <jobxml/Node.h>

void run(JobXml::Node &node)
{
#ifdef CORRECTED
    node.Setid(QString());
#else
    node.Setid(nullptr);
#endif
}

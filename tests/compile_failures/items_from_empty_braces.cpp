// SPDX-License-Identifier: MIT
#include <jobxml/Node.h>

void run(JobXml::Node &node)
{
#ifdef CORRECTED
    node.AppendValueItem(JobXml::ValueItem());
#else
    node.AppendValueItem({});
#endif
}

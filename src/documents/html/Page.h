// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QString>

#include "documents/html/Markup.h"

namespace TunerDocuments {

/// The frame of a page: everything around its content.
struct Page
{
    QString title;
    bool hasCards; ///< whether there is something to search, open and close

    /// Shows the whole page.
    void show(Markup &out, const std::function<void()> &header, const std::function<void()> &content) const;
};

} // namespace TunerDocuments

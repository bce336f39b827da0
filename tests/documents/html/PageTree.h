// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <QHash>
#include <QString>
#include <QStringList>
#include <QXmlStreamReader>

/// An element of a page, or a text in it, which has no tag.
struct PageNode
{
    QString tag;
    QHash<QString, QString> attributes;
    QString text;
    std::vector<std::unique_ptr<PageNode>> children;
    const PageNode *parent = nullptr;

    QString attribute(const char *name) const { return attributes.value(QLatin1String(name)); }
    bool has(const char *name) const { return attributes.contains(QLatin1String(name)); }
    bool isOfClass(const char *name) const
    {
        return attribute("class").split(QLatin1Char(' ')).contains(QLatin1String(name));
    }

    /// Calls the function for each element in it, in page order.
    void forEach(const std::function<void(const PageNode &)> &function) const
    {
        for (const auto &child : children) {
            if (child->tag.isEmpty())
                continue;
            function(*child);
            child->forEach(function);
        }
    }

    std::vector<const PageNode *> all(const std::function<bool(const PageNode &)> &matches) const
    {
        std::vector<const PageNode *> found;
        forEach([&](const PageNode &node) {
            if (matches(node))
                found.push_back(&node);
        });
        return found;
    }

    std::vector<const PageNode *> allTagged(const char *tagName) const
    {
        return all([&](const PageNode &node) { return node.tag == QLatin1String(tagName); });
    }

    /// Whether an element around it matches the predicate.
    const PageNode *around(const std::function<bool(const PageNode &)> &matches) const
    {
        const PageNode *node = parent;
        while (node && !matches(*node))
            node = node->parent;
        return node;
    }

    /// All text in it; signs are replaced with the characters whose codes are their titles.
    QString wholeText() const
    {
        if (tag.isEmpty())
            return text;
        if (isOfClass("sign")) {
            const char32_t code = attribute("title").mid(2).toUInt(nullptr, 16);
            return code > 0xFFFF ? QString::fromUcs4(&code, 1) : QString(QChar(ushort(code)));
        }
        QString whole;
        for (const auto &child : children)
            whole += child->wholeText();
        return whole;
    }

    /// The value that it shows for a member: a text, a number or a word; for a list, one for each entry. What is found
    /// about the value is not part of it.
    QStringList values() const
    {
        QStringList found;
        for (const PageNode *node : all([](const PageNode &each) {
                 return (each.tag == QLatin1String("bdi") || each.isOfClass("number") || each.isOfClass("word"))
                     && !each.around([](const PageNode &outer) { return outer.isOfClass("problem"); });
             }))
            found.append(node->wholeText());
        return found;
    }
};

/// A page read as XML; one that is not well-formed has no elements, and an error.
class PageTree
{
public:
    explicit PageTree(const QByteArray &page)
    {
        QXmlStreamReader reader(page);
        PageNode *current = &m_root;
        while (!reader.atEnd()) {
            switch (reader.readNext()) {
            case QXmlStreamReader::StartElement: {
                current = append(current);
                current->tag = reader.name().toString();
                for (const QXmlStreamAttribute &attribute : reader.attributes())
                    current->attributes.insert(attribute.qualifiedName().toString(), attribute.value().toString());
                break;
            }
            case QXmlStreamReader::EndElement:
                current = const_cast<PageNode *>(current->parent);
                break;
            case QXmlStreamReader::Characters:
                append(current)->text = reader.text().toString();
                break;
            default:
                break;
            }
        }
        if (reader.hasError()) {
            m_error = QStringLiteral("line %1: %2").arg(reader.lineNumber()).arg(reader.errorString());
            m_root.children.clear();
        }
    }

    const QString &error() const { return m_error; }
    const PageNode &root() const { return m_root; }

private:
    static PageNode *append(PageNode *parent)
    {
        parent->children.push_back(std::make_unique<PageNode>());
        parent->children.back()->parent = parent;
        return parent->children.back().get();
    }

    PageNode m_root;
    QString m_error;
};

/// The texts of all elements of this name on a page.
inline QStringList textsOf(const QByteArray &page, const char *tag)
{
    QStringList texts;
    const PageTree tree(page);
    for (const PageNode *node : tree.root().allTagged(tag))
        texts.append(node->wholeText());
    return texts;
}

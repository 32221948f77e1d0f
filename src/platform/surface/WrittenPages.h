#pragma once

#include "platform/surface/merge/MergeSource.h"

#include <QMap>
#include <QSet>

#include <memory>
#include <optional>

/// A page as its author wrote it, and what is known of how the engine reads it.
class WrittenPage
{
public:
    explicit WrittenPage(QString text) : m_text(std::move(text)) {}

    const QString &Text() const { return m_text; }

    /// Null until it is known how the engine writes the page right after it was loaded.
    SourceMerger *Merger() { return m_merger ? &*m_merger : nullptr; }
    void SetBase(const QString &base) { m_merger.emplace(m_text, base); }

    /// Changes that were found to read as wanted (SourceMerger::Result::Doubt).
    QSet<quint64> Proven;

private:
    QString m_text;
    std::optional<SourceMerger> m_merger;
};

/// The written pages by the generation (SurfaceTexts.h) of the root that was made of them or of a change of them.
class WrittenPages
{
public:
    void Set(int generation, std::shared_ptr<WrittenPage> page) { m_pages.insert(generation, std::move(page)); }
    /// Null when it is not known.
    std::shared_ptr<WrittenPage> Of(int generation) const { return m_pages.value(generation); }
    void ForgetBefore(int generation)
    {
        while (!m_pages.isEmpty() && m_pages.firstKey() < generation)
            m_pages.erase(m_pages.begin());
    }

private:
    QMap<int, std::shared_ptr<WrittenPage>> m_pages;
};

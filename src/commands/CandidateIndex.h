#pragma once

#include <QHash>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

/// Tells which of many phrases can occur in a text at all, so that only their expressions need to
/// run. What it costs depends on the words of the text, not on the number of phrases.
///
/// Never leaves out a phrase that occurs; it may name one that does not.
class CandidateIndex {
public:
    /// A phrase is known by its place in the list.
    explicit CandidateIndex(const QStringList &phrases = {});

    /// The places of the phrases that can occur, rising.
    QVector<int> candidates(const QString &text) const;

private:
    void add(const QStringList &tokens, int phrase);
    void follow(const QVector<int> &tokens, int first, QVector<int> *found) const;

    int m_phraseCount;
    QHash<QString, int> m_tokens;
    /// The tree of the phrases' beginnings: from a node by a token to the next node.
    QHash<QPair<int, int>, int> m_steps;
    /// By node, the phrases that are complete there; node 0 is the root.
    QVector<QVector<int>> m_complete;
};

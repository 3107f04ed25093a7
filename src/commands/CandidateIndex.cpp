#include "commands/CandidateIndex.h"

#include "commands/PhraseTokens.h"

#include <algorithm>
#include <numeric>

namespace {

constexpr int kNone = -1;

} // namespace

CandidateIndex::CandidateIndex(const QStringList &phrases)
    : m_phraseCount(phrases.size()), m_complete(1) {
    for (int i = 0; i < phrases.size(); ++i) {
        // A phrase without tokens, or with unknown ones, is complete anywhere.
        add(PhraseTokens::of(phrases[i]).value_or(QStringList()), i);
    }
}

void CandidateIndex::add(const QStringList &tokens, int phrase) {
    int node = 0;
    for (const QString &token : tokens) {
        const auto known = m_tokens.constFind(token);
        const int number = known == m_tokens.cend() ? m_tokens.size() : *known;
        if (known == m_tokens.cend())
            m_tokens.insert(token, number);
        int &next = m_steps[qMakePair(node, number)];
        if (next == 0) {
            next = m_complete.size();
            m_complete.append(QVector<int>());
        }
        node = next;
    }
    m_complete[node].append(phrase);
}

QVector<int> CandidateIndex::candidates(const QString &text) const {
    const std::optional<QStringList> tokens = PhraseTokens::of(text);
    QVector<int> found;
    if (!tokens) {
        found.resize(m_phraseCount);
        std::iota(found.begin(), found.end(), 0);
        return found;
    }
    QVector<int> numbers;
    numbers.reserve(tokens->size());
    for (const QString &token : *tokens)
        numbers.append(m_tokens.value(token, kNone));
    found = m_complete.constFirst();
    for (int first = 0; first < numbers.size(); ++first)
        follow(numbers, first, &found);
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}

void CandidateIndex::follow(const QVector<int> &tokens, int first, QVector<int> *found) const {
    int node = 0;
    for (int i = first; i < tokens.size(); ++i) {
        node = m_steps.value(qMakePair(node, tokens[i]));
        if (node == 0)
            return;
        *found += m_complete[node];
    }
}

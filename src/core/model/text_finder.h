#pragma once

#include <string>
#include <string_view>

namespace kestavon {

/// Finds one needle in many texts, ASCII letters in either case, every other byte exactly. Searches
/// 32 bytes a step where the processor can, which it is asked once. Immutable: any thread.
class TextFinder {
public:
    /// Ways of searching; all find the same.
    enum class Method {
        bytewise, ///< any processor
        sse2, ///< 16 bytes a step
        avx2, ///< 32 bytes a step
    };
    /// The fastest one that this processor has.
    static Method fastestMethod();
    static bool isSupported(Method method);

    /// `needle` is not empty and has its ASCII letters in lower case.
    explicit TextFinder(std::string needle, Method method = fastestMethod());

    const std::string& needle() const { return m_needle; }

    /// The first place from `begin` where the needle lies wholly before `end`; null without one.
    /// Bytes up to `readableEnd` (at least `end`) may be read ahead but are not matched.
    const char* find(const char* begin, const char* end, const char* readableEnd) const
    {
        return m_find(*this, begin, end, readableEnd);
    }
    bool isIn(std::string_view text) const
    {
        const auto* const end = text.data() + text.size();
        return find(text.data(), end, end) != nullptr;
    }
    /// Whether the needle is at `text`, where as many bytes as it has can be read.
    bool isAt(const char* text) const
    {
        for (std::size_t i = 0; i < m_needle.size(); ++i) {
            if ((text[i] | m_caseBits[i]) != m_needle[i])
                return false;
        }
        return true;
    }

private:
    using Find = const char* (*)(const TextFinder&, const char*, const char*, const char*);
    static Find implementation(Method method);
    static const char* findBytewise(
        const TextFinder& finder, const char* begin, const char* end, const char* readableEnd);
    static const char* findBySse2(
        const TextFinder& finder, const char* begin, const char* end, const char* readableEnd);
    static const char* findByAvx2(
        const TextFinder& finder, const char* begin, const char* end, const char* readableEnd);

    std::string m_needle;
    /// For each byte of the needle the bit that tells a letter's cases apart, 0 for other bytes:
    /// with it set, either case of the letter, and nothing else, equals the needle's byte.
    std::string m_caseBits;
    Find m_find;
};

} // namespace kestavon

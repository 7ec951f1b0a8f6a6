#pragma once

#include <bit>
#include <cstdint>
#include <initializer_list>

/// A set of the members of an enumeration of at most 64 members, copied by value. Iteration goes in
/// the order of the enumeration.
template <typename E>
class TSet
{
public:
    class TIterator
    {
    public:
        explicit TIterator(std::uint64_t rest) : FRest(rest) {}
        E operator*() const { return static_cast<E>(std::countr_zero(FRest)); }
        TIterator &operator++()
        {
            FRest &= FRest - 1;
            return *this;
        }
        bool operator==(const TIterator &) const = default;

    private:
        std::uint64_t FRest;
    };

    constexpr TSet() = default;
    constexpr TSet(std::initializer_list<E> members)
    {
        for (E member : members)
            Include(member);
    }
    /// Every member from the enumeration's first to `last`.
    static constexpr TSet UpTo(E last)
    {
        TSet all;
        for (int i = 0; i <= static_cast<int>(last); ++i)
            all.Include(static_cast<E>(i));
        return all;
    }

    constexpr void Include(E member) { FBits |= Bit(member); }
    constexpr void Exclude(E member) { FBits &= ~Bit(member); }
    constexpr void Set(E member, bool on) { on ? Include(member) : Exclude(member); }
    constexpr bool Contains(E member) const { return (FBits & Bit(member)) != 0; }
    constexpr bool ContainsAll(TSet other) const { return (FBits & other.FBits) == other.FBits; }
    constexpr bool IsEmpty() const { return FBits == 0; }
    constexpr int Count() const { return std::popcount(FBits); }

    constexpr TSet operator+(TSet other) const { return FromBits(FBits | other.FBits); }
    constexpr TSet operator-(TSet other) const { return FromBits(FBits & ~other.FBits); }
    constexpr TSet operator*(TSet other) const { return FromBits(FBits & other.FBits); }
    constexpr bool operator==(const TSet &) const = default;

    TIterator begin() const { return TIterator(FBits); }
    TIterator end() const { return TIterator(0); }

private:
    static constexpr std::uint64_t Bit(E member)
    {
        return std::uint64_t(1) << static_cast<int>(member);
    }
    static constexpr TSet FromBits(std::uint64_t bits)
    {
        TSet set;
        set.FBits = bits;
        return set;
    }

    std::uint64_t FBits = 0;
};

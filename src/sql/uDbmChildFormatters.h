#pragma once

#include "core/uDbmServerFeatures.h"

/// Base of the formatters of one kind of server object: they make text and read rows, and touch no
/// connection. No state changes after construction, so pages and jobs share them.
class TDbmChildFormatters
{
public:
    virtual ~TDbmChildFormatters() = default;
    TDbmChildFormatters(const TDbmChildFormatters &) = delete;
    TDbmChildFormatters &operator=(const TDbmChildFormatters &) = delete;

protected:
    explicit TDbmChildFormatters(const TDbmServerFeatures *serverFeatures)
        : FServerFeatures(serverFeatures)
    {}
    /// Called by the factory behind construction and ahead of destruction.
    virtual void DoInitialize() {}
    virtual void DoFinalize() {}

    const TDbmServerFeatures *FServerFeatures; // not owned

private:
    template <typename T>
    friend class TDbmFormattersOwner;
};

/// Owns formatters of one class and runs their hooks, which constructors cannot.
template <typename T>
class TDbmFormattersOwner
{
public:
    explicit TDbmFormattersOwner(const TDbmServerFeatures *features) : FFormatters(features)
    {
        Base().DoInitialize();
    }
    ~TDbmFormattersOwner() { Base().DoFinalize(); }

    T &operator*() { return FFormatters; }
    const T &operator*() const { return FFormatters; }

private:
    TDbmChildFormatters &Base() { return FFormatters; }

    T FFormatters;
};

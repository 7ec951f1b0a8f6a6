#pragma once

#include <memory>
#include <utility>

class TDbmCommands;
class TDbmFormatters;
class TDbmManager;
class TDbmProvider;
class TDbmServerFeatures;

/// Base of everything in the tree of server objects. An element is stale or loaded: RequestProcess
/// only marks it stale, the next read does the work. Used by the thread that owns the workspace.
class TDbmElement
{
public:
    virtual ~TDbmElement();
    TDbmElement(const TDbmElement &) = delete;
    TDbmElement &operator=(const TDbmElement &) = delete;

    /// The one way to make an element below another: constructs T with the owner first, then calls
    /// DoCreate, which a constructor cannot. DoDestroy runs ahead of the destructor.
    template <typename T, typename... TArgs>
    static std::shared_ptr<T> New(TDbmElement *owner, TArgs &&...args)
    {
        std::shared_ptr<T> element(new T(owner, std::forward<TArgs>(args)...), [](T *gone) {
            static_cast<TDbmElement *>(gone)->DoDestroy();
            delete gone;
        });
        static_cast<TDbmElement *>(element.get())->DoCreate();
        return element;
    }

    /// nullptr at the root, and for an element whose owner is gone.
    TDbmElement *Owner() const { return FOwner ? *FOwner : nullptr; }
    /// The owner as what it is. Raises EException when it is gone.
    template <typename T>
    T &OwnerAs() const
    {
        return static_cast<T &>(ExistingOwner());
    }
    /// Whether all owners up to the root are there. An item that somebody holds outlives its list;
    /// then it stays as it was last read, and marking it does nothing.
    bool IsAttached() const;
    bool IsProcessed() const { return FProcessed; }
    void RequestProcess();
    void RequestProcessOfOwner();

protected:
    /// Shares the owner's provider, features, formatters and commands.
    explicit TDbmElement(TDbmElement *owner);
    /// The root form; DoCreate is not called.
    TDbmElement(TDbmProvider *provider, TDbmServerFeatures *features, TDbmFormatters *formatters,
                TDbmCommands *commands);

    virtual void DoCreate() {}
    virtual void DoDestroy() {}
    virtual void DoRequestProcess() {}
    virtual void DoProcess() {}

    /// An element below this one, made when it is asked for: most objects of a server are never
    /// looked into.
    template <typename T>
    T &Child(std::shared_ptr<T> &child)
    {
        if (!child)
            child = New<T>(this);
        return *child;
    }
    /// Marks this element alone: what was read below it stays.
    void RequestOwnProcess() { FProcessed = false; }
    template <typename T>
    static void RequestProcessOf(const std::shared_ptr<T> &child)
    {
        if (child)
            child->RequestProcess();
    }
    /// The root of the tree. Raises EException when the element hangs on none any more.
    TDbmManager &Manager();

    /// Every read accessor runs this first. An element counts as loaded also when its read raised,
    /// so that a failing server is not asked once per repaint.
    void Process();

    TDbmProvider *FProvider = nullptr;
    TDbmServerFeatures *FFeatures = nullptr;
    TDbmFormatters *FFormatters = nullptr;
    TDbmCommands *FCommands = nullptr;

private:
    // An element and those below it share this place, which its end empties.
    using TPlace = std::shared_ptr<TDbmElement *>;

    TPlace Place();
    TDbmElement &ExistingOwner() const;

    TPlace FOwner; // empty at the root
    TPlace FPlace; // empty while nothing hangs below
    bool FProcessed = false;
};

#pragma once

/// Something that is loaded for editing, and whose changes are then taken or dropped.
class IChangable {
public:
    /// Reads what is stored into the fields.
    virtual void Load() = 0;
    /// Lets go of what is only needed while it is shown.
    virtual void Unload() = 0;
    /// Stores the fields.
    virtual void Apply() = 0;
    /// Drops what was edited.
    virtual void Cancel() = 0;
    /// Whether the fields differ from what is stored.
    virtual bool IsChanged() = 0;
    virtual ~IChangable() = default;

    IChangable(const IChangable &) = delete;
    IChangable &operator=(const IChangable &) = delete;

protected:
    IChangable() = default;
};

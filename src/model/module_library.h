// A part of the program built as a module of its own (the windows and the
// pictures, the sound, the printer), loaded only when a run needs it, so that
// a run without it maps none of the libraries behind it.
#pragma once

#include <QString>

#include <cstdio>
#include <memory>
#include <optional>

namespace orm {

class ModuleLibrary {
public:
    // lib<name>.so beside the executable (the build folder), else in the
    // folder an install puts it in, relative to the executable's.
    explicit ModuleLibrary(const char* name);
    ~ModuleLibrary();
    ModuleLibrary(const ModuleLibrary&) = delete;
    ModuleLibrary& operator=(const ModuleLibrary&) = delete;

    bool loaded() const { return handle_ != nullptr; }
    // Why it is not loaded, or why a function is missing.
    QString error() const { return error_; }

    // The module's entry `name`, null (with error() said) when it has none.
    template <class Function>
    Function* function(const char* name)
    {
        return reinterpret_cast<Function*>(symbol(name));
    }

    // A new T from the module's entry `name`, which takes no argument; null,
    // and why said on standard error after `what`, when the module or the
    // entry is missing.
    template <class T>
    T* make(const char* name, const char* what)
    {
        if (auto* entry = function<T*()>(name))
            return entry();
        std::fprintf(stderr, "ormivane: %s: %s\n", what, qPrintable(error_));
        std::fflush(stderr);
        return nullptr;
    }

private:
    void* symbol(const char* name);

    void* handle_ = nullptr;
    QString error_;
};

// A T made by the entry `entry` of the module `module` when it is first asked
// for, so that a run that never asks loads neither. The object goes before its
// module does.
template <class T>
class ModuleObject {
public:
    // `what` begins the line on standard error when the object cannot be made.
    ModuleObject(const char* module, const char* entry, const char* what) : module_(module), entry_(entry), what_(what)
    {
    }

    // The object, its module loaded at the first call; null when it cannot be made.
    T* get()
    {
        if (!library_) {
            library_.emplace(module_);
            object_.reset(library_->make<T>(entry_, what_));
        }
        return object_.get();
    }
    // The object if it was made, without loading anything.
    T* made() const { return object_.get(); }

private:
    const char* module_;
    const char* entry_;
    const char* what_;
    std::optional<ModuleLibrary> library_;
    std::unique_ptr<T> object_;  // after library_, so that it goes first
};

}  // namespace orm

// One running instance per data folder: a kernel lock on a file in it, which
// the system drops when its holder ends however it ends, so that a lock left
// by a killed run never keeps the next one out.
#pragma once

#include <QString>

namespace orm {

class InstanceLock {
public:
    enum Result { Taken, HeldByAnother, Unusable };

    InstanceLock() = default;
    ~InstanceLock();
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;

    // Takes the lock on `file`, making it when missing. Unusable when the file
    // cannot be opened for writing; error() then says why.
    Result take(const QString& file);
    void release();
    QString error() const { return error_; }

private:
    int fd_ = -1;
    QString error_;
};

}  // namespace orm

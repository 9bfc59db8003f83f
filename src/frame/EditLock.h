#pragma once

#include <QString>

// A declaration open for editing on one workstation opens for consultation
// only on another. On a server the lock is the server's own, held by this
// workstation's session: it dies with the session (a program that ends or
// breaks off frees it), and the other workstations learn who holds it by the
// name the session carries. On a file, used by one person, it is always
// granted.
class EditLock
{
public:
    // Takes the lock on `key` (a declaration's key); "" when granted (or
    // already held here), otherwise the name of the workstation that holds it.
    static QString Acquire(const QString& key);
    // Frees the lock on `key` when this workstation holds it.
    static void Release(const QString& key);
    // What the person reads when another workstation holds the lock.
    static QString HeldText(const QString& workstation);
};

// Dictionaries of objects by name and by number, and the dictionaries that everyone knows.
#pragma once

#include "rxiter.h"
#include "rxobject.h"

// Stands on one entry after the other, those that were there when it was made.
class ACBASE_PORT AcRxDictionaryIterator : public AcRxIterator {
public:
    static AcRxClass* desc();
    static AcRxDictionaryIterator* cast(const AcRxObject* object);
    AcRxClass* isA() const override;

    // The entry's key, null when done. It lives as long as the entry.
    virtual const ACHAR* key() const = 0;
    // The entry's number, 0 when done.
    virtual Adesk::UInt32 id() const = 0;
};

// Objects under keys; each entry also has a number of its own, 1 or more, which it keeps.
class ACBASE_PORT AcRxDictionary : public AcRxObject {
public:
    static AcRxClass* desc();
    static AcRxDictionary* cast(const AcRxObject* object);
    AcRxClass* isA() const override;

    // The object, null when there is none.
    virtual AcRxObject* at(const ACHAR* key) const = 0;
    virtual AcRxObject* at(Adesk::UInt32 id) const = 0;

    // Puts an object under a key and tells the entry's number. Returns the object that stood there before. In
    // a dictionary that refuses doubles (the class, service and system dictionaries) an object that stands
    // there stays: it is returned, and the number is 0. A null key or object is put nowhere: null, and 0.
    virtual AcRxObject* atPut(const ACHAR* key, AcRxObject* object, Adesk::UInt32& id) = 0;
    // Puts an object in place of the one with that number, which it returns; null, and nothing done, when
    // there is none, and in a dictionary that refuses doubles.
    virtual AcRxObject* atPut(Adesk::UInt32 id, AcRxObject* object) = 0;
    // Makes a new entry with the key and the number. False, and nothing done, when one of them is in use.
    virtual bool atKeyAndIdPut(const ACHAR* key, Adesk::UInt32 id, AcRxObject* object) = 0;

    // Gives an entry another key. False when there is no such entry or the new key is in use.
    virtual bool resetKey(const ACHAR* oldKey, const ACHAR* newKey) = 0;
    virtual bool resetKey(Adesk::UInt32 id, const ACHAR* newKey) = 0;

    // Takes an entry out. Returns the object, which now belongs to the caller; null when there was none, and
    // when the dictionary deletes its objects itself.
    virtual AcRxObject* remove(const ACHAR* key) = 0;
    virtual AcRxObject* remove(Adesk::UInt32 id) = 0;

    virtual bool has(const ACHAR* key) const = 0;
    virtual bool has(Adesk::UInt32 id) const = 0;
    // The number of a key, 0 when there is none.
    virtual Adesk::UInt32 idAt(const ACHAR* key) const = 0;
    // The key of a number, null when there is none. It lives as long as the entry.
    virtual const ACHAR* keyAt(Adesk::UInt32 id) const = 0;
    virtual Adesk::UInt32 numEntries() const = 0;

    // A walk over the entries, sorted by key or in the order in which they came. The caller deletes it.
    virtual AcRxDictionaryIterator* newIterator(AcRx::DictIterType type = AcRx::kDictSorted) = 0;

    // Whether objects are deleted with their entries.
    virtual bool deletesObjects() const = 0;
    // Whether keys that differ in case only are two keys.
    virtual bool isCaseSensitive() const = 0;
};

// The dictionary of the host's parts: everything below, and what the host adds under names of its own.
ACBASE_PORT AcRxDictionary* acrxSysRegistry();

// Keys of the system registry.
#define ACRX_CLASS_DICTIONARY ACRX_T("ClassDictionary")
#define ACRX_SERVICE_DICTIONARY ACRX_T("ServiceDictionary")
#define ACRX_DYNAMIC_LINKER ACRX_T("DynamicLinker")

// The dictionary of class descriptions, by name, case counting.
#define acrxClassDictionary (AcRxDictionary::cast(acrxSysRegistry()->at(ACRX_CLASS_DICTIONARY)))
// The dictionary of services.
#define acrxServiceDictionary (AcRxDictionary::cast(acrxSysRegistry()->at(ACRX_SERVICE_DICTIONARY)))

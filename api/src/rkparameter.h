// rkparameter.h - a named parameter of a test: described, asked, read, walked, printed.

#ifndef RAKOVA_RKPARAMETER_H
#define RAKOVA_RKPARAMETER_H

#include "rkcstream.h"
#include "rkistream.h"

// Parameter objects are file statics of the tests; lists of parameters do not own them. All errors of reading
// are rkExceptions that stop in fromIStream, so that after a bad text the old value stays and the run goes
// on.
class rkParameter {
public:
    rkParameter(rkString name, rkString descr);
    rkParameter(rkParameter const &) = delete;
    rkParameter &operator=(rkParameter const &) = delete;

    // A parameter may be built empty and named later. An empty name makes it invisible.
    void init(rkString name, rkString descr);

    virtual void reset();
    virtual rkString valueString() const;
    virtual rkString defaultString() const;
    virtual rkString validString() const; // what may be entered, or ""
    virtual rkString description() const;
    virtual rkString prompt() const;
    virtual void resetIterator();
    virtual bool firstValue(); // starts a walk over the values; false if there is none
    virtual bool nextValue();  // false at the end; then ready for a new walk
    virtual bool isDeprecatedParm();
    virtual bool isDeprecatedValue();
    virtual bool setDeprecatedFlag(bool on); // true if the present value is a deprecated one
    virtual rkOStream &toOStream(rkOStream &stream) const;
    virtual int colmIndex() const; // a fixed column of the table, or -1
    virtual rkCStream &toCStream(rkCStream &stream) const;
    virtual rkCStream &nameToCStream(rkCStream &stream) const;
    virtual rkIStream &fromIStream(rkIStream &stream);
    virtual void translate(rkString text); // takes the value from a text; throws rkException

    enum Flags { QuotedInTables = 2 };

    rkString m_name;  // key in the ini file and of -d, column title, label
    rkString m_descr; // of the prompt
    bool m_done;      // a walk is under way
    bool m_readable;  // false: fromIStream only prints the description
    int m_flags;
    bool m_deprecated; // the present value is a deprecated one
    rkString m_deprecatedText;

protected:
    ~rkParameter() = default;

private:
    rkCStream &cellToCStream(rkCStream &stream, rkString text) const;
    void readValue(rkIStream &stream);
};

#endif

#ifndef PLATFORM_IREMOTE_OBJECT_H
#define PLATFORM_IREMOTE_OBJECT_H

namespace TARN {

/// A service of another process, as far as a client holds it in its hand.
class IRemoteObject {
public:
    virtual ~IRemoteObject() = default;
};

}  // namespace TARN

#endif  // PLATFORM_IREMOTE_OBJECT_H

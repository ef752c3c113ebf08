// Who wants to hear that a menu opened or closed.
#pragma once

namespace ormund {

class KWOptionMenuExtraCallBack {
public:
    virtual ~KWOptionMenuExtraCallBack() = default;
    virtual void menuOpened() = 0;
    virtual void menuClosed() = 0;
};

} // namespace ormund

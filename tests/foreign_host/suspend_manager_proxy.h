#pragma once

namespace TARN::SuspendManager {
class SuspendManagerProxy;
}

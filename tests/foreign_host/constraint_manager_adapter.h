#pragma once

#include <memory>
#include <string>
#include <vector>

namespace TARN::DevStandbyMgr {
class ConstraintEvalParam;
class IConstraintMonitor;

class IConstraintManagerAdapter {
public:
    [[nodiscard]] virtual bool Init() = 0;
    [[nodiscard]] virtual bool UnInit() = 0;
    virtual void StartEvalution(const ConstraintEvalParam& params) = 0;
    virtual void StopEvalution() = 0;
    virtual void RegisterConstraintCallback(const ConstraintEvalParam& params,
                                            const std::shared_ptr<IConstraintMonitor>& monitor) = 0;
    virtual void ShellDump(const std::vector<std::string>& args, std::string& result) = 0;
    virtual ~IConstraintManagerAdapter();
};

class ConstraintManagerAdapter : public IConstraintManagerAdapter {
public:
    [[nodiscard]] bool Init() override;
    [[nodiscard]] bool UnInit() override;
    void StartEvalution(const ConstraintEvalParam& params) override;
    void StopEvalution() override;
    void RegisterConstraintCallback(const ConstraintEvalParam& params,
                                    const std::shared_ptr<IConstraintMonitor>& monitor) override;
    void ShellDump(const std::vector<std::string>& args, std::string& result) override;
};
}  // namespace TARN::DevStandbyMgr

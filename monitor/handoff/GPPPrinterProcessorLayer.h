#pragma once

#include <cstdint>

class GWaitBudget;

/// GPPPrinterProcessorLayer: the counted start and stop of all that the hand-off of jobs needs: the
/// framework, the manager of the message queues, and the layer's texts.
///
/// Not locked: module load and unload, and notifications under the monitor's lock, take turns.
class GPPPrinterProcessorLayer {
public:
    /// How long one notification may wait for shared mutexes in all.
    static constexpr long cWaitLimit = 5000;  // milliseconds
    /// The same for loading the module. Short, since the loader's lock is held meanwhile; what could not be
    /// started then is started by the first notification.
    static constexpr long cLoadLimit = 500;  // milliseconds

    /// Only the first call works, within what is left of the wait budget. When it throws, nothing is
    /// started and nothing counted.
    static void Initialize();
    /// The call that matches the first Initialize stops everything, without waiting for any mutex; one
    /// too many does nothing.
    static void Finalize() noexcept;
    static bool IsInitialized() noexcept { return sLayerInitCount > 0; }  ///< whether the layer runs

    /// What everything started here waits within.
    static GWaitBudget& GetWaitBudget() noexcept;

private:
    static void Start();
    static void Stop() noexcept;

    static std::int32_t sLayerInitCount;
};

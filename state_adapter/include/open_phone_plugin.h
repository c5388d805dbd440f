#ifndef STATE_ADAPTER_OPEN_PHONE_PLUGIN_H
#define STATE_ADAPTER_OPEN_PHONE_PLUGIN_H

/// The plugin's one entry: hands the running service a set of the four adapters, which the service owns from
/// then on. Always true; each call hands over a set of its own.
extern "C" bool OnPluginRegister();

#endif  // STATE_ADAPTER_OPEN_PHONE_PLUGIN_H

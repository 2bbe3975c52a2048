// SPDX-License-Identifier: MIT
// Records what the plug-in calls in its host.
#pragma once

#include "host/plugin_services.h"
#include "record/recorder.h"

namespace agent::record {

class RecordedServices : public PluginServices {
  public:
    RecordedServices(Recorder &recorder, PluginServices &next) : recorder_(recorder), next_(next) {}

    void log(const char *module, int32_t level, const char *format, va_list arguments) override;
    char *base64_encode(const char *text) override;
    void getmd5(const char *text, char *out) override;
    void mac_form_translate(const char *in, int32_t form, char *out) override;
    void ts_sys_mgr_get_brmac(char *mac) override;
    int32_t dev_is_exist(int32_t index) override;
    int32_t kaa_device_notice(const char *text) override;
    int32_t kaa_update_profile_info() override;
    void free_str_buf(char **text) override;
    int system(const char *command) override;
    time_t time(time_t *result) override;
    tm *localtime_r(const time_t *time, tm *result) override;
    unsigned sleep(unsigned seconds) override;

  private:
    template <class Add> void record(const Recorder::Begin &begin, const char *name, Add add);
    std::string shown(const char *text) const;
    std::string without_addresses(const std::string &text) const;

    Recorder &recorder_;
    PluginServices &next_;
};

} // namespace agent::record

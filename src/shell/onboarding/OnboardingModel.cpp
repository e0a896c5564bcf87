// SPDX-License-Identifier: MIT
#include "shell/onboarding/OnboardingModel.h"

#include "shell/onboarding/AppSample.h"
#include "shell/onboarding/OnboardingController.h"
#include "text/Localization.h"

namespace talvera {

namespace {

QString numbered(QString pattern, int number) {
    if (const auto at = pattern.indexOf(QStringLiteral("%d")); at >= 0)
        pattern.replace(at, 2, QString::number(number));
    return pattern;
}

} // namespace

OnboardingModel::OnboardingModel(const Parts& parts)
    : m_controller(parts.controller)
    , m_permissions(parts.controller, parts.readiness)
    , m_download(parts.downloader)
    , m_hotkey(parts.controller, parts.settings, parts.keyboardLayout, parts.recorder)
    , m_demo(parts.controller, parts.settings, parts.keyboardLayout) {
    m_controller.onAdvice = [this](const QString& advice) { setAdvice(advice); };
    m_cancellables.push_back(m_controller.step.observe([this](int) {
        m_hotkey.stopRecording(); // on its own step alone
        setAdvice({});
        Q_EMIT stepChanged();
        Q_EMIT gateChanged();
    }));
    const auto forgetAdvice = [this](const auto&) { setAdvice({}); }; // it spoke of what has changed
    m_cancellables.push_back(m_controller.micStatus.observe(forgetAdvice));
    m_cancellables.push_back(m_controller.axTrusted.observe(forgetAdvice));
    m_cancellables.push_back(parts.downloader.phase.observe([this](const auto&) { Q_EMIT gateChanged(); }));
    m_cancellables.push_back(
        m_controller.asksToSkipPermissions.observe([this](bool) { Q_EMIT questionChanged(); }));
}

OnboardingModel::~OnboardingModel() {
    m_controller.onAdvice = nullptr;
}

int OnboardingModel::step() const {
    return m_controller.step.get();
}

int OnboardingModel::stepCount() const {
    return OnboardingController::stepCount;
}

QString OnboardingModel::stepText() const {
    return numbered(numbered(localized("onboarding.nav.stepOf", "Step %d of %d"), step() + 1), stepCount());
}

QString OnboardingModel::primaryText() const {
    switch (step()) {
    case OnboardingController::WelcomeStep:
        return localized("onboarding.nav.getStarted", "Get started");
    case OnboardingController::DemoStep:
        return localized("onboarding.nav.finish", "Finish");
    default:
        return localized("onboarding.nav.continue", "Continue");
    }
}

bool OnboardingModel::canGoOn() const {
    return m_controller.canGoOn();
}

QString OnboardingModel::hint() const {
    return m_controller.hint();
}

bool OnboardingModel::asksToSkip() const {
    return m_controller.asksToSkipPermissions.get();
}

QVariantList OnboardingModel::samples() const {
    return appSamples();
}

void OnboardingModel::pressPrimary() {
    m_controller.pressPrimary();
}

void OnboardingModel::back() {
    m_controller.back();
}

void OnboardingModel::skipPermissions() {
    m_controller.skipPermissions();
}

void OnboardingModel::openSettingsInstead() {
    m_controller.openSettingsInstead();
}

void OnboardingModel::dismissQuestion() {
    m_controller.dismissQuestion();
}

void OnboardingModel::setAdvice(const QString& advice) {
    if (m_advice == advice)
        return;
    m_advice = advice;
    Q_EMIT adviceChanged();
}

} // namespace talvera

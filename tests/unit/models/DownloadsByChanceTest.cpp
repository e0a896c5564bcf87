// SPDX-License-Identifier: MIT
// Downloads from servers, networks and disks that fail by chance, with a user who presses the button.
#include "ModelDownloaderFixture.h"

#include <cerrno>
#include <random>

using namespace talvera;
using namespace talvera::test;

namespace {

using Phase = ModelDownloader::Phase;

class DownloadsByChance : public ModelDownloaderTest {
protected:
    void expectNothingHalf() {
        EXPECT_TRUE(!files.exists(mainPath) || files.read(mainPath) == mainBytes);
        EXPECT_TRUE(phase() != Phase::Done || store->isReady());
        const double progress = downloader->progress.get();
        EXPECT_TRUE(progress >= 0 && progress <= 1) << progress;
    }

    /// Something is on its way, or the user reads what to do.
    void expectNeverStuck() {
        const bool runs = std::any_of(network.transfers.begin(), network.transfers.end(),
                                      [](const auto& transfer) { return transfer->isRunning(); });
        EXPECT_EQ(phase().isBusy(), runs);
        EXPECT_EQ(phase() == Phase::failed(phase().message()), !phase().message().isEmpty());
    }

    int upTo(int most) { return std::uniform_int_distribution(0, most)(random); }
    bool oneIn(int times) { return upTo(times - 1) == 0; }

    FakeReply reply(const QByteArray& bytes) {
        FakeReply made{.bytes = bytes, .takes = seconds(1 + upTo(5))};
        if (oneIn(3))
            made.failure = static_cast<DownloadFailure>(1 + upTo(12));
        else if (oneIn(4))
            made.bytes = "a page";
        return made;
    }
    void serve(bool well) {
        const auto both = source();
        network.serve(both.main.url, well ? FakeReply{.bytes = mainBytes} : reply(mainBytes));
        network.serve(both.encoder.url, well ? FakeReply{.bytes = archiveBytes} : reply(archiveBytes));
        network.setOnline(well || !oneIn(4));
        files.setCapacity(well || !oneIn(5) ? std::nullopt
                                            : std::optional<qint64>(upTo(2) * 1'000'000'000LL));
        files.failMovesTo(mainPath, well || !oneIn(6) ? 0 : ENOSPC);
        unzip.status = well || !oneIn(4) ? 0 : 3;
        unzip.launchFailure = well || !oneIn(8) ? std::nullopt : std::optional<int>(ENOMEM);
    }
    /// The program is killed and started again.
    void restart() {
        observations.clear();
        downloader.reset();
        files.setCapacity(std::nullopt);
        files.createDirectories("/data/Talvera/downloads");
        files.write("/data/Talvera/downloads/main-left.tmp", "half"); // on a disk that keeps such files
        make();
    }
    void step() {
        serve(false);
        switch (upTo(5)) {
        case 0:
            downloader->start();
            break;
        case 1:
            downloader->retry();
            break;
        case 2:
            restart();
            downloader->start();
            break;
        default:
            actor.advance(seconds(upTo(8)));
        }
        expectNothingHalf();
    }

    std::mt19937 random;
};

TEST_F(DownloadsByChance, whateverHappens_endsInAModelOrASentenceWithAWayOut) {
    for (unsigned seed = 0; seed < 400 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        random.seed(seed);
        files.setCapacity(std::nullopt);
        files.failMovesTo(mainPath, 0);
        files.removeAll("/data/Talvera/models");
        observations.clear();
        downloader.reset();
        make().start();
        for (int i = 0; i < 30; ++i)
            step();
        actor.runToRest(seconds(3600));
        expectNeverStuck();

        serve(true);
        actor.runToRest(seconds(3600));
        downloader->retry();
        actor.runToRest(seconds(3600));
        EXPECT_EQ(phase(), Phase::Done);
        EXPECT_TRUE(store->isReady());
        EXPECT_EQ(files.read(mainPath), mainBytes);
        network.transfers.clear();
    }
}

} // namespace

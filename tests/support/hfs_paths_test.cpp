#include "support/desktop_entry.h"
#include "support/paths.h"
#include "support/printing.h"
#include "support/scratch_folder.h"
#include "support/volumes.h"

namespace vornaset {
namespace {

class HfsPaths : public testing::Test {
  protected:
    void SetUp() override {
        setVolumes({{"Main Disk", "/"}, {"Photos", "/media/photos"}, {"2/3", "/media/photos/inner"}});
    }
    void TearDown() override { setVolumes({}); }
};

TEST_F(HfsPaths, BecomePosixPathsBelowTheirVolume) {
    EXPECT_EQ(pathWithHFS("Main Disk:Users:a b:c.idml"), "/Users/a b/c.idml");
    EXPECT_EQ(pathWithHFS("Photos:2024:x.jpg"), "/media/photos/2024/x.jpg");
    EXPECT_EQ(pathWithHFS("2/3:x"), "/media/photos/inner/x");
    EXPECT_EQ(pathWithHFS("Main Disk:"), "/");
    EXPECT_EQ(pathWithHFS("Photos:"), "/media/photos");
    EXPECT_EQ(pathWithHFS("Photos:folder:"), "/media/photos/folder");
}

TEST_F(HfsPaths, TextsThatAreNoneComeBackAsTheyAre) {
    for (const char* text :
         {"", "a", ":", "/a:b", "/Main Disk:x", "no colon", "a/b/c", "Unknown:folder", "http://x", ":a:b"}) {
        EXPECT_EQ(pathWithHFS(text), text);
    }
    EXPECT_TRUE(pathWithHFS(nullptr).isNull());
}

TEST_F(HfsPaths, SlashesAndColonsInNamesChangePlaces) {
    EXPECT_EQ(pathWithHFS("Main Disk:3/4:x"), "/3:4/x");
    EXPECT_EQ(hfsPathWithString("/3:4/x"), "Main Disk:3/4:x");
}

TEST_F(HfsPaths, AnEmptyComponentGoesUp) {
    EXPECT_EQ(pathWithHFS("Photos:a::b"), "/media/photos/b");
    EXPECT_EQ(pathWithHFS("Photos:::b"), "/media/photos/b");
}

TEST_F(HfsPaths, ComeFromTheVolumeWithTheLongestMountPoint) {
    EXPECT_EQ(hfsPathWithString("/Users/c.idml"), "Main Disk:Users:c.idml");
    EXPECT_EQ(hfsPathWithString("/media/photos/x"), "Photos:x");
    EXPECT_EQ(hfsPathWithString("/media/photos2/x"), "Main Disk:media:photos2:x");
    EXPECT_EQ(hfsPathWithString("/media/photos/inner/x"), "2/3:x");
    EXPECT_EQ(hfsPathWithString("/media/photos"), "Photos:");
    EXPECT_EQ(hfsPathWithString("/"), "Main Disk:");
    EXPECT_EQ(hfsPathWithString("/a//b/./c/../d/"), "Main Disk:a:b:d");
    EXPECT_EQ(hfsPathWithString("/../.."), "Main Disk:");
}

TEST_F(HfsPaths, OfOtherTextsAreTheTextsInComposedForm) {
    EXPECT_EQ(hfsPathWithString(""), "");
    EXPECT_EQ(hfsPathWithString(u"Main Disk:a\u0308"), u"Main Disk:\u00E4");
    EXPECT_EQ(hfsPathWithString(u"/a\u0308"), u"Main Disk:\u00E4");
    EXPECT_TRUE(hfsPathWithString(nullptr).isNull());
}

TEST_F(HfsPaths, PathWithStringComposesAndTakesAnythingWithoutASlashInFrontForOne) {
    EXPECT_EQ(pathWithString("Photos:x"), "/media/photos/x");
    EXPECT_EQ(pathWithString(u"Photos:a\u0308"), u"/media/photos/\u00E4");
    EXPECT_EQ(pathWithString(u"/a\u0308:b"), u"/\u00E4:b");
    EXPECT_EQ(pathWithString("Photos"), "/media/photos");
    EXPECT_EQ(pathWithString("images/a.jpg"), "images/a.jpg");
    EXPECT_EQ(pathWithString(""), "");
    EXPECT_TRUE(pathWithString(nullptr).isNull());
}

TEST_F(HfsPaths, EachConversionWorksOnceAlone) {
    for (const char* text : {"Main Disk:a:b", "/a/b", "Photos:", "x:y", "a/b"}) {
        EXPECT_EQ(pathWithHFS(pathWithHFS(text)), pathWithHFS(text));
        EXPECT_EQ(pathWithString(pathWithString(text)), pathWithString(text));
        EXPECT_EQ(hfsPathWithString(hfsPathWithString(text)), hfsPathWithString(text));
    }
}

TEST_F(HfsPaths, AVolumeIsFoundByItsNameInWhateverForm) {
    setVolumes({{u"Au\u00DFen\u00E4", "/x"}});
    EXPECT_EQ(pathWithHFS(u"Au\u00DFena\u0308:b"), "/x/b");
    EXPECT_EQ(hfsPathWithString("/y"), "/y");
}

TEST(MachineVolumes, AreInversesOnWhatExists) {
    ScratchFolder folder;
    std::filesystem::create_directories(folder.path() + "/a b/3:4/\xC3\xA4");
    writeFile(folder.path() + "/a b/.x", "");
    Array paths = filesAtPath(folder.path().c_str(), 1);
    for (const Volume& volume : volumes()) paths.add(volume.mountPoint);
    ASSERT_GE(paths.count(), 5u);
    for (const Value& path : paths) {
        const String hfs = hfsPathWithString(path.string());
        EXPECT_NE(hfs, path.string());
        EXPECT_EQ(pathWithHFS(hfs), path.string()) << hfs.utf8();
        EXPECT_EQ(pathWithString(hfs), path.string()) << hfs.utf8();
    }
}

TEST(MachineVolumes, AreReadFromTheListOfMounts) {
    constexpr const char* kMounts =
        "23 1 8:2 / / rw,relatime shared:1 - ext4 /dev/sda2 rw\n"
        "24 23 0:5 / /proc rw - proc proc rw\n"
        "25 23 0:6 / /dev/shm rw - tmpfs tmpfs rw\n"
        "26 23 8:17 / /media/My\\040Stick rw - vfat /dev/sdb1 rw\n"
        "27 23 8:33 / /mnt/backup rw,noatime shared:4 master:2 - ext4 /dev/sdc1 rw\n"
        "28 23 8:33 /part /mnt/shown-again rw - ext4 /dev/sdc1 rw\n"
        "29 23 8:49 / /boot/efi rw - vfat /dev/sdd1 rw\n"
        "30 23 0:50 / /net/office/backup rw - nfs4 server:/export rw\n"
        "31 23 8:65 / /run/media/me/x rw - vfat /dev/sde1 rw\n"
        "32 23 8:66 / /run/other rw - vfat /dev/sdf1 rw\n"
        "a damaged line\n";
    EXPECT_EQ(volumesOfMounts(kMounts, {{"/dev/sda2", "System: new"}, {"/dev/sdc1", "backup"}}),
              (std::vector<Volume>{{"System/ new", "/"},
                                   {"My Stick", "/media/My Stick"},
                                   {"backup", "/mnt/backup"},
                                   {"backup 1", "/net/office/backup"},
                                   {"x", "/run/media/me/x"}}));
}

TEST(MachineVolumes, TheRootIsAlwaysThere) {
    EXPECT_EQ(volumesOfMounts("", {}), (std::vector<Volume>{{"Root", "/"}}));
    EXPECT_EQ(volumesOfMounts("1 1 0:1 / / rw - overlay overlay rw\n", {}), (std::vector<Volume>{{"Root", "/"}}));
}

TEST(MachineVolumes, AMountOverAnotherHidesIt) {
    EXPECT_EQ(volumesOfMounts("1 1 0:1 / / rw - rootfs rootfs rw\n2 1 8:1 / / rw - ext4 /dev/sda1 rw\n",
                              {{"/dev/sda1", "Disk"}}),
              (std::vector<Volume>{{"Disk", "/"}}));
}

class Aliases : public testing::Test {
  protected:
    String at(const std::string& name) const { return String::fromUTF8(folder_.path() + "/" + name); }
    ScratchFolder folder_;
};

TEST_F(Aliases, ALinkGivesWhatItPointsAtInTheEnd) {
    const std::string target = std::filesystem::canonical(folder_.path()).string() + "/target";
    writeFile(at("target").utf8(), "x");
    std::filesystem::create_symlink("target", at("one").utf8());
    std::filesystem::create_symlink("one", at("two").utf8());
    EXPECT_EQ(resolvePath(at("two")), String::fromUTF8(target));
    EXPECT_EQ(resolvePath(at("two/")), String::fromUTF8(target));
}

TEST_F(Aliases, WhatIsNoneOrPointsAtNothingComesBack) {
    writeFile(at("file").utf8(), "x");
    std::filesystem::create_symlink("nowhere", at("broken").utf8());
    std::filesystem::create_symlink("loop", at("loop").utf8());
    for (const char* name : {"file", "missing", "broken", "loop", ""}) EXPECT_EQ(resolvePath(at(name)), at(name));
    EXPECT_TRUE(resolvePath(nullptr).isNull());
    EXPECT_EQ(resolvePath(u""), u"");
}

TEST_F(Aliases, ALinkFileOfTheFileBrowserIsOne) {
    writeFile(at("a b").utf8(), "x");
    const std::string begin = "# comment\n[Desktop Entry]\nType=Link\nName=x\nURL = ";
    writeFile(at("good.desktop").utf8(), begin + "file://" + folder_.path() + "/a%20b\n");
    writeFile(at("web.desktop").utf8(), begin + "https://example.org/\n");
    writeFile(at("gone.desktop").utf8(), begin + "file://" + folder_.path() + "/gone\n");
    writeFile(at("program.desktop").utf8(), "[Desktop Entry]\nType=Application\nURL=file:///tmp\n");
    EXPECT_EQ(resolvePath(at("good.desktop")), at("a b"));
    for (const char* name : {"web.desktop", "gone.desktop", "program.desktop"})
        EXPECT_EQ(resolvePath(at(name)), at(name));
}

TEST(FileURLs, AreOfThisMachineAndDecoded) {
    EXPECT_EQ(pathOfFileURL("file:///a%20b%C3%A4"), "/a b\xC3\xA4");
    EXPECT_EQ(pathOfFileURL("file://localhost/a"), "/a");
    EXPECT_EQ(pathOfFileURL("file:/a"), "/a");
    for (const char* url : {"file://server/a", "http:///a", "file:///a%2", "file:///a%zz", "file:///a%00b", "", "/a"}) {
        EXPECT_FALSE(pathOfFileURL(url).has_value()) << url;
    }
    EXPECT_EQ(fileURLOfPath("/a b%\xC3\xA4~"), "file:///a%20b%25%C3%A4~");
    std::string all = "/";
    for (int byte = 1; byte < 256; ++byte) all += static_cast<char>(byte);
    EXPECT_EQ(pathOfFileURL(fileURLOfPath(all)), all);
}

TEST(DesktopEntries, GroupsKeysAndEscapes) {
    const DesktopEntryFile file(
        "stray=1\n[A]\nk = v=w \r\nk=second\n#k2=x\n[B C]\ntext=a\\sb\\n\\\\c\\q\\\n[A]\nlater=1");
    EXPECT_EQ(file.value("A", "k"), "v=w");
    EXPECT_EQ(file.value("A", "later"), "1");
    EXPECT_EQ(file.value("A", "k2"), "");
    EXPECT_EQ(file.value("", "stray"), "");
    EXPECT_EQ(file.text("B C", "text"), "a b\n\\c\\q\\");
    EXPECT_TRUE(file.group("none").empty());
    EXPECT_FALSE(DesktopEntryFile::atPath("/no/such/file").has_value());
}

}  // namespace
}  // namespace vornaset

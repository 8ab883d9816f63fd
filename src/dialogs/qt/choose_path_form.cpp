#include "dialogs/qt/choose_path_form.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QStyle>
#include <QVBoxLayout>

namespace norvik50::qt {
namespace {

QString ToQ(std::u16string_view text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

// The Windows form of a Linux folder; "" when no drive covers it.
QString WindowsPathOf(const QString& linux_path) {
  return ToQ(ToWindowsPath(linux_path.toStdString()).value_or(u""));
}

// The Linux folder a Windows path names; "" when it names no folder.
QString LinuxFolderOf(const QString& windows_path) {
  const auto linux_path = ToLinuxPath(windows_path.toStdU16String());
  if (!linux_path) return {};
  const QFileInfo info(QString::fromStdString(*linux_path));
  return info.isDir() ? QDir::cleanPath(info.absoluteFilePath()) : QString();
}

QString RootOf(char16_t letter) {
  const auto roots = DriveRoots();
  const auto found = roots.find(letter);
  return found == roots.end() ? QString() : QString::fromStdString(found->second);
}

}  // namespace

ChoosePathForm::ChoosePathForm(ChoosePathRequest request, QWidget* owner)
    : FormBase(owner, request.language), request_(std::move(request)) {
  setObjectName(QStringLiteral("frmChoosePath"));
  setWindowTitle(ToQ(request_.title));

  auto* picture = new QLabel(this);
  picture->setObjectName(QStringLiteral("Image1"));
  picture->setPixmap(QApplication::style()->standardIcon(QStyle::SP_DirOpenIcon).pixmap(32, 32));
  picture->setAlignment(Qt::AlignTop | Qt::AlignHCenter);

  auto* frame = new QGroupBox(this);
  frame->setObjectName(QStringLiteral("Frame1"));
  drives_ = new QComboBox(frame);
  drives_->setObjectName(QStringLiteral("drvTargetDrive"));
  // Each letter with the Linux folder it stands for: the map is the
  // host's, and a person needs to see where C: lies.
  for (const char16_t letter : request_.drives) {
    drives_->addItem(QString(QChar(letter)) + QStringLiteral(":  ") + RootOf(letter),
                     QVariant(static_cast<int>(letter)));
  }
  model_ = new QFileSystemModel(this);
  model_->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
  model_->setReadOnly(true);
  tree_ = new QTreeView(frame);
  tree_->setObjectName(QStringLiteral("dirTargetPath"));
  tree_->setModel(model_);
  tree_->setHeaderHidden(true);
  // Folders in name order, as a folder list shows them.
  tree_->setSortingEnabled(true);
  tree_->sortByColumn(0, Qt::AscendingOrder);
  for (int column = 1; column < model_->columnCount(); ++column) tree_->hideColumn(column);
  auto* frame_layout = new QVBoxLayout(frame);
  frame_layout->addWidget(drives_);
  frame_layout->addWidget(tree_, 1);

  label_ = new QLabel(ToQ(request_.path_label), this);
  label_->setObjectName(QStringLiteral("labTargetPath"));
  path_ = new QLineEdit(this);
  path_->setObjectName(QStringLiteral("txtTargetPath"));
  label_->setBuddy(path_);

  ok_ = new QPushButton(ToQ(request_.ok_caption), this);
  ok_->setObjectName(QStringLiteral("cmdOk"));
  ok_->setDefault(true);
  cancel_ = new QPushButton(ToQ(request_.cancel_caption), this);
  cancel_->setObjectName(QStringLiteral("cmdCancel"));
  cancel_->setAutoDefault(false);
  new_folder_ = new QPushButton(ToQ(request_.new_folder_caption), this);
  new_folder_->setObjectName(QStringLiteral("cmdNewFolder"));
  new_folder_->setAutoDefault(false);

  auto* buttons = new QVBoxLayout;
  buttons->addWidget(ok_);
  buttons->addWidget(cancel_);
  buttons->addSpacing(12);
  buttons->addWidget(new_folder_);
  buttons->addStretch(1);
  auto* grid = new QGridLayout(this);
  grid->addWidget(picture, 0, 0);
  grid->addWidget(frame, 0, 1);
  grid->addLayout(buttons, 0, 2);
  grid->addWidget(label_, 1, 1);
  grid->addWidget(path_, 2, 1, 1, 2);
  grid->setColumnStretch(1, 1);
  grid->setRowStretch(0, 1);
  resize(430, 330);

  connect(drives_, &QComboBox::activated, this, [this](int index) { DriveChosen(index); });
  connect(tree_->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this](const QModelIndex& current) {
            if (current.isValid()) SetFolder(model_->filePath(current));
          });
  // Folders arrive in the background and sorting moves rows: once the
  // folders on the way to the current one are read, it is scrolled into
  // view again. Folders a person opens elsewhere leave the view alone.
  connect(model_, &QFileSystemModel::directoryLoaded, this, [this](const QString& loaded) {
    const QString prefix = loaded.endsWith(QLatin1Char('/')) ? loaded : loaded + QLatin1Char('/');
    if (folder_ == loaded || folder_.startsWith(prefix)) tree_->scrollTo(tree_->currentIndex());
  });
  connect(ok_, &QPushButton::clicked, this, [this] { Confirm(); });
  connect(cancel_, &QPushButton::clicked, this, [this] {
    result_ = 2;
    chosen_.clear();
    HideForm();
  });
  connect(new_folder_, &QPushButton::clicked, this, [this] { NewFolder(); });

  // The member checked the start folder; should it have gone since, the
  // current folder stands in, as for a start folder that never existed.
  if (!SetFolder(LinuxFolderOf(ToQ(request_.start_path)))) SetFolder(QDir::currentPath());
  tree_->setFocus();
}

bool ChoosePathForm::SetFolder(const QString& linux_folder) {
  if (linux_folder.isEmpty() || !QFileInfo(linux_folder).isDir()) return false;
  const QString folder = QDir::cleanPath(QFileInfo(linux_folder).absoluteFilePath());
  const QString windows = WindowsPathOf(folder);
  if (windows.isEmpty()) return false;
  folder_ = folder;
  // The drive list follows without reporting a change of its own.
  const int drive = drives_->findData(QVariant(static_cast<int>(windows.at(0).unicode())));
  if (drive >= 0) drives_->setCurrentIndex(drive);
  const QString root = RootOf(windows.at(0).unicode());
  model_->setRootPath(root);
  tree_->setRootIndex(model_->index(root));
  const QModelIndex index = model_->index(folder_);
  if (tree_->currentIndex() != index) {
    const QSignalBlocker quiet(tree_->selectionModel());
    tree_->setCurrentIndex(index);
  }
  tree_->expand(index);
  tree_->scrollTo(index);
  path_->setText(windows);
  return true;
}

void ChoosePathForm::DriveChosen(int index) {
  const char16_t letter = static_cast<char16_t>(drives_->itemData(index).toInt());
  if (!SetFolder(RootOf(letter))) {
    // A drive whose folder is missing cannot be shown: the list goes back.
    SetFolder(folder_);
  }
}

void ChoosePathForm::Confirm() {
  // A typed path is taken when it is an existing folder; otherwise the
  // tree's folder is the answer, as the field is only a view of it.
  SetFolder(LinuxFolderOf(path_->text()));
  result_ = 1;
  chosen_ = WindowsPathOf(folder_);
  HideForm();
}

void ChoosePathForm::NewFolder() {
  if (!request_.new_folder) return;
  const std::optional<std::u16string> made = request_.new_folder(path_->text().toStdU16String());
  if (made) SetFolder(LinuxFolderOf(ToQ(*made)));
}

void ChoosePathForm::GoToPaths(const QStringList& windows_paths) {
  if (!windows_paths.isEmpty()) SetFolder(LinuxFolderOf(windows_paths.first()));
}

DialogFacts ChoosePathForm::Facts() const {
  DialogFacts f;
  f.form = QStringLiteral("frmChoosePath");
  f.title = windowTitle();
  f.prompt = label_->text();
  f.buttons << ok_->text() << cancel_->text() << new_folder_->text();
  f.default_button = 1;
  f.cancel_button = 2;
  f.value = chosen_;
  f.has_value = true;
  return f;
}

}  // namespace norvik50::qt

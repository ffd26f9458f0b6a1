// The storage inventory as the controller sees it: every member hands over to the inventory with the controller's
// arrays.
#include "app/controller.h"
#include "storage/drive_inventory.h"

namespace zelvo::app {

void Orlin_Repair_AVIAppDelegate::initialDriveList() {
  const platform::StorageView storage = services_.lookAtStorage();
  storage::initialDriveList(*storage.media, *storage.volumes, responseFindMedia, finalArrayForVolumes,
                            services_.printed);
}

void Orlin_Repair_AVIAppDelegate::volumeList() {
  storage::volumeList(*services_.lookAtStorage().volumes, finalArrayForVolumes, services_.printed);
}

void Orlin_Repair_AVIAppDelegate::truncateDriveModelNumber() { storage::truncateDriveModelNumber(responseFindMedia); }

}  // namespace zelvo::app

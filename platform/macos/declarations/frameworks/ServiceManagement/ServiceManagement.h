// Stands for <ServiceManagement/ServiceManagement.h>
#pragma once

#import <ServiceManagement/SMAppService.h>

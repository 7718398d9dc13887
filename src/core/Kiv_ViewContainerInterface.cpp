#include "Kiv_ViewContainerInterface.h"

Kiv_ViewContainerInterface::~Kiv_ViewContainerInterface() = default;

void Kiv_ViewContainerInterface::removeView(Kiv_ViewInterface *) { }
